#include "robot/Import.h"

#include "data/DataError.h"
#include "data/history/Write.h"
#include "forms/Acts.h"
#include "forms/Desktop.h"
#include "robot/ImportFields.h"
#include "runtime/Convert.h"
#include "runtime/PropertyBag.h"
#include "runtime/Region.h"
#include "runtime/Single.h"
#include "session/DialogDirectory.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <variant>

namespace zv {
namespace {

/// Decorator of the live database's connection for the time of an import: all dialogs are one opening, and
/// what they insert is counted.
class ImportConnection final : public ConnectionDecorator {
public:
    ImportConnection(ConnectionPtr inner, StringView table, const Opening& by)
        : ConnectionDecorator(std::move(inner)), table_(table)
    {
        this->inner()->dialogOpened(by);
    }
    ~ImportConnection() override { inner()->dialogClosed(); }
    ImportConnection(const ImportConnection&) = delete;
    ImportConnection& operator=(const ImportConnection&) = delete;

    void dialogOpened(const Opening& /*opening*/) override {}
    void dialogClosed() override { inner()->dialogAtRest(); }

    RecordsetPtr Execute(StringView statement) override
    {
        const auto write = history::writeOf(statement);
        if (!write || write->kind != history::Write::Kind::insert || !sameName(write->table, table_))
            return asked(statement);
        try {
            RecordsetPtr result = asked(statement);
            ++inserted_;
            return result;
        } catch (const DataError& error) {
            // A dialog tries another key for as long as it is taken. Where it is not the key that is unique,
            // that is for ever, and nobody is there to end it.
            if (error.number() != failure::keyExists || ++taken_ < mostTries)
                throw;
            throw DataError(failure::brokenConstraint, error.engineCode(), error.engineText(), statement);
        }
    }

    void beginLine() { inserted_ = taken_ = 0; }
    bool inserted() const { return inserted_ > 0; }
    /// The failure after which every other line would wait and fail alike; "" while there is none.
    const String& broken() const { return broken_; }

private:
    RecordsetPtr asked(StringView statement)
    {
        try {
            return inner()->Execute(statement);
        } catch (const DataError& error) {
            if (error.number() == failure::locked || error.number() == failure::connectionLost)
                broken_ = error.description();
            throw;
        }
    }

    static constexpr int mostTries = 100;
    String table_;
    int inserted_ = 0;
    int taken_ = 0;
    String broken_;
};

CommandButton* buttonOf(const Form& form, StringView caption)
{
    for (Control* control : form.Controls)
        if (auto* button = dynamic_cast<CommandButton*>(control);
            button != nullptr && button->Caption() == caption)
            return button;
    return nullptr;
}

String between(StringView text) { return u"«" + String(text) + u"»"; }

String listed(const std::vector<ImportField>& fields)
{
    String result;
    for (const ImportField& field : fields) {
        result += result.empty() ? u" " : u", ";
        for (const String& each : field.headings)
            result += (&each == &field.headings.front() ? u"" : u" o ") + between(each);
        if (field.mandatory)
            result += u" (hace falta)";
    }
    return result;
}

class Import final : public Desktop {
public:
    Import(const School& school, const ModuleNode& node, const Opening& by)
        : node_(node), before_(hasDesktop() ? &desktop() : nullptr),
          centro_(std::make_shared<ImportConnection>(school.centro, node.table, by)),
          session_(newHostSession({centro_, school.borrado, school.entrada}))
    {
        useDesktop(this);
        useRegion(spanishRegion);
        const bool server = centro_->engine().name.find(u"SQL Server") != String::npos;
        let(*session_, u"sqlserver", server);
        let(*session_, u"NombreUsuario", by.userName);
    }
    ~Import() override
    {
        resetSingles();
        useRegion(region_);
        useDesktop(before_);
    }
    Import(const Import&) = delete;
    Import& operator=(const Import&) = delete;

    /// Matches the headings with the dialog's fields.
    void readHeadings(const CsvLine& headings)
    {
        std::vector<ImportField> fields;
        open([&](Form& form) { fields = importFieldsOf(form); });
        const auto refuse = [&](const String& reason) {
            throw ImportError(reason + u" Las columnas de " + between(node_.title) + u" son:" +
                              listed(fields) + u".");
        };
        columns_ = headings.cells.size();
        while (columns_ > 0 && Trim(headings.cells[columns_ - 1]).empty())
            --columns_;
        std::vector<std::optional<std::size_t>> columnOf(fields.size());
        for (std::size_t column = 0; column < columns_; ++column) {
            const StringView heading = csvContent(headings.cells[column]);
            const auto field = std::ranges::find_if(fields, [&](const ImportField& each) {
                return std::ranges::any_of(each.headings,
                                           [&](StringView known) { return sameWord(known, heading); });
            });
            if (field == fields.end())
                refuse(u"No se conoce la columna " + between(heading) + u".");
            if (std::exchange(columnOf[static_cast<std::size_t>(field - fields.begin())], column))
                refuse(u"La columna " + between(heading) + u" está dos veces.");
        }
        for (std::size_t i = 0; i < fields.size(); ++i)
            if (!columnOf[i] && fields[i].mandatory)
                refuse(u"Falta la columna " + between(fields[i].headings.front()) + u".");
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (!columnOf[i])
                continue;
            // What is refused is told by the list's own heading.
            fields[i].headings = {Trim(csvContent(headings.cells[*columnOf[i]]))};
            fields_.emplace_back(std::move(fields[i]), *columnOf[i]);
        }
    }

    ImportedLine add(const CsvLine& line)
    {
        messages_.clear();
        refusal_ = cellsWrong(line);
        centro_->beginLine();
        if (refusal_.empty())
            try {
                open([&](Form& form) { fillAndAccept(form, line); });
            } catch (const RuntimeError& error) {
                tell(error.description());
            }
        ImportedLine result{line.line, centro_->inserted(), refusal_.empty() ? messages_ : refusal_};
        if (!result.added && result.message.empty())
            result.message = u"La ventana se ha cerrado sin guardar la fila.";
        return result;
    }
    const String& broken() const { return centro_->broken(); }

    void opened(Form& /*form*/) override {}
    void runModal(Form& form) override
    {
        if (const auto visit = std::exchange(visit_, nullptr))
            visit(form);
        if (CommandButton* cancel = buttonOf(form, u"Cancelar"); cancel != nullptr && form.Visible())
            Acts().click(*cancel);
        if (form.Visible())
            form.Unload();
    }
    void closed(Form& /*form*/) override {}
    void messageBox(StringView prompt, Integer /*flags*/, StringView /*title*/) override { tell(prompt); }
    void beep() override {}
    void doEvents() override {}
    void handlerFailed(const RuntimeError& error) override { tell(error.description()); }

private:
    void tell(StringView message)
    {
        messages_ += (messages_.empty() ? u"" : u" ") + Replace(Replace(message, u"\r", u" "), u"\n", u" ");
    }

    /// Opens the node's dialog for a new row, as a host does, until the callback has ended.
    void open(std::function<void(Form&)> visit)
    {
        visit_ = std::move(visit);
        let(*session_, u"Accion", Long{cConstCol::NUEVO});
        let(*session_, u"lngRowData", Long{0});
        cAsignarDatos facade;
        facade.ObtenerDatos(session_);
        if (node_.opens)
            facade.ActivarFormulario(node_.number);
        else
            dialogs().find(node_.dialog).instance().Show();
    }

    String cellsWrong(const CsvLine& line) const
    {
        std::size_t cells = line.cells.size();
        while (cells > columns_ && line.cells[cells - 1].empty())
            --cells;
        if (cells == columns_)
            return {};
        return u"La línea tiene " + decimalText(static_cast<std::int64_t>(cells)) +
               u" celdas, y la cabecera " + decimalText(static_cast<std::int64_t>(columns_)) + u".";
    }

    void fillAndAccept(Form& form, const CsvLine& line)
    {
        for (const auto& [field, column] : fields_) {
            if (std::holds_alternative<std::monostate>(field.target) && !line.cells[column].empty() &&
                !std::exchange(unusedTold_, true))
                tell(u"Lo de " + between(field.headings.front()) +
                     u" no se usa: lo calcula la ventana; mire si es lo mismo.");
            if (refusal_ = fillIn(field, csvContent(line.cells[column])); !refusal_.empty())
                return;
        }
        CommandButton* const accept = buttonOf(form, u"Aceptar");
        if (accept == nullptr || !Acts().click(*accept))
            refusal_ = u"No se puede pulsar Aceptar.";
    }

    const ModuleNode& node_;
    Desktop* before_;
    Region region_ = region();
    std::shared_ptr<ImportConnection> centro_;
    std::shared_ptr<PropertyBag> session_;
    std::function<void(Form&)> visit_; ///< Callback for the dialog that opens next.
    std::size_t columns_ = 0;
    std::vector<std::pair<ImportField, std::size_t>> fields_; ///< With the column that fills each.
    String messages_;                                         ///< Of the line in hand.
    bool unusedTold_ = false;
    String refusal_; ///< Why the line in hand could not be typed.
};

} // namespace

void importList(const School& school, const ModuleNode& node, const std::vector<CsvLine>& lines,
                const Opening& by, const std::function<void(const ImportedLine&)>& tell)
{
    if (!takesLists(node.dialog))
        throw ImportError(u"En " + between(node.title) +
                          u" no se importan listas: lo que se escribe en su ventana depende de lo que se "
                          u"elige en ella.");
    if (lines.empty())
        throw ImportError(u"La lista está vacía.");
    Import import(school, node, by);
    import.readHeadings(lines.front());
    for (auto line = lines.begin() + 1; line != lines.end(); ++line) {
        tell(import.add(*line));
        if (!import.broken().empty())
            throw ImportError(u"Se deja de importar en la línea " + decimalText(line->line) + u". " +
                              import.broken());
    }
}

} // namespace zv
