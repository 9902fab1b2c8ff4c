#include "robot/TextTrial.h"

#include "data/Statement.h"
#include "forms/Acts.h"
#include "forms/ComboBox.h"
#include "forms/Desktop.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "robot/FreshSchool.h"
#include "robot/Guion.h"
#include "robot/OddTexts.h"
#include "robot/Outline.h"
#include "robot/WatchedConnection.h"
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
#include <ostream>
#include <set>

namespace zv {

namespace {

/// How to reach a dialog that only another one opens.
struct Road {
    StringView dialog;
    StringView from;
    void (*goOn)(Form& from);
};

template <class C>
C& part(Form& form, StringView name)
{
    return dynamic_cast<C&>(form.reach(name));
}

void openFirstBranch(Form& bank)
{
    constexpr int change = 3;
    Acts acts;
    acts.clickTab(part<TabStrip>(bank, u"mstBanco"), 2);
    acts.clickCell(part<MSFlexGrid>(bank, u"msgBanco"), 1, 0);
    acts.click(bank.reach(u"cmdBotonera", change));
    // Accept the bank as well, since it is what writes the branches.
    acts.click(bank.reach(u"cmdBotonera", 0));
}

void openFirstSection(Form& selection, Long kind)
{
    Acts acts;
    acts.choose(part<ComboBox>(selection, u"cboTipoEnsenanza"), kind);
    acts.choose(part<ComboBox>(selection, u"cboCursos"), 0);
    acts.choose(part<ComboBox>(selection, u"cboSecciones"), 0);
    acts.click(selection.reach(u"cmdNotaManual1", 0));
}

constexpr Road roads[] = {
    {u"frmSucursal", u"frmBanco", openFirstBranch},
    {u"frmInfIndPrim", u"frmInformeIndividual", [](Form& from) { openFirstSection(from, 0); }},
    {u"frmInfIndESO", u"frmInformeIndividual", [](Form& from) { openFirstSection(from, 1); }}};

constexpr StringView harmless[] = {u"Casado",    u"1234", u"12,5", u"12345", u"0049",
                                   u"B12345678", u"16%",  u"-1",   u""};
constexpr StringView letters = u"abc";

/// A text box, by its dialog and its index among the controls.
struct BoxPlace {
    String dialog;
    std::size_t place = 0;
    String name;
};

class Trial final : public Desktop {
public:
    Trial(const TextTrial& wishes, std::ostream& out)
        : wishes_(wishes), out_(out), before_(hasDesktop() ? &desktop() : nullptr), fresh_(wishes.url, true)
    {
        useDesktop(this);
        useRegion(spanishRegion); // The harmless texts have a decimal comma.
        // One pupil for each section, for speed: a section is written pupil by pupil.
        fresh_.school().centro->executeNative(
            u"DELETE FROM Seccion_Alumno WHERE codAlumno NOT IN "
            u"(SELECT MIN(codAlumno) FROM Seccion_Alumno GROUP BY codSeccion)");
        session_ =
            newHostSession(watched(fresh_.school(), [this](StringView statement) { watch(statement); }));
    }
    ~Trial() override
    {
        resetSingles();
        useRegion(region_);
        useDesktop(before_);
    }
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;

    bool run()
    {
        for (const String& dialog : dialogs().names())
            if (wishes_.dialog.empty() || sameName(wishes_.dialog, dialog))
                tryDialog(dialog);
        out_ << "Cuadros de texto: " << boxes_ << ". "
             << (faults_ == 0 ? "Todo bien.\n" : "Lo que no está bien está detrás de MAL.\n");
        return faults_ == 0 && boxes_ > 0;
    }

    void opened(Form&) override {}
    void closed(Form&) override {}
    void messageBox(StringView, Integer, StringView) override { ++messages_; }
    void beep() override {}
    void doEvents() override {}
    /// A DataError counts as a refusal with a message; any other failure is a fault.
    void handlerFailed(const RuntimeError& error) override
    {
        ++messages_;
        if (dynamic_cast<const DataError*>(&error) == nullptr)
            fault(error.description());
    }
    void runModal(Form& form) override
    {
        const Road* road = roadTo(box_.dialog);
        if (road != nullptr && sameName(form.Name(), road->from))
            road->goOn(form);
        else
            visit_(form);
        Acts().close(form);
    }

private:
    static const Road* roadTo(StringView dialog)
    {
        const auto* found = std::ranges::find(roads, dialog, &Road::dialog);
        return found == std::end(roads) ? nullptr : found;
    }

    void watch(StringView statement)
    {
        const Outline outline(statement);
        if (outline.second)
            fault(u"dos instrucciones en una: " + String(statement));
        statements_.insert(outline.skeleton);
        if (outline.names(u"MAX("))
            keyQuery_ = statement;
    }

    void fault(StringView text)
    {
        ++faults_;
        out_ << "MAL: " << toUtf8(box_.dialog + u" " + box_.name + doing_ + u": " + String(cut(text, 400)))
             << '\n';
    }

    void tryDialog(const String& dialog)
    {
        std::size_t place = 0;
        for (const Control* control : dialogs().find(dialog).instance().Controls) {
            if (dynamic_cast<const TextBox*>(control) != nullptr) {
                box_ = {dialog, place, control->fullName()};
                tryBox();
                ++boxes_;
            }
            ++place;
        }
    }

    void open(std::function<void(Form&)> visit)
    {
        visit_ = std::move(visit);
        let(*session_, u"Accion", newRow_ ? Long{cConstCol::NUEVO} : Long{cConstCol::Modificado});
        cAsignarDatos().ObtenerDatos(session_);
        const Road* road = roadTo(box_.dialog);
        dialogs().find(road != nullptr ? road->from : StringView(box_.dialog)).instance().Show();
    }

    /// Finds the box, and brings the tab on which it lies to the front; nullptr if it stays inaccessible.
    TextBox* boxOn(Form& form) const
    {
        auto* box = dynamic_cast<TextBox*>(
            *std::next(form.Controls.begin(), static_cast<std::ptrdiff_t>(box_.place)));
        for (Control* control : form.Controls)
            if (auto* strip = dynamic_cast<TabStrip*>(control))
                for (Long tab = 1; tab <= strip->tabCount() && !box->accessible(); ++tab)
                    Acts().clickTab(*strip, tab);
        return box->accessible() ? box : nullptr;
    }

    std::optional<String> stored()
    {
        std::optional<String> text;
        open([&](Form& form) {
            if (const TextBox* box = boxOn(form))
                text = box->Text();
        });
        return text;
    }

    static void accept(Form& form)
    {
        for (Control* control : form.Controls)
            if (const auto* button = dynamic_cast<const CommandButton*>(control);
                button != nullptr && button->Caption() == u"Aceptar") {
                Acts().click(*control);
                return;
            }
    }

    /// Reads the box back from the row inserted last.
    std::optional<String> storedNew()
    {
        let(*session_, u"lngRowData", fresh_.school().centro->Execute(keyQuery_)->Fields(u"Mayor"));
        newRow_ = false;
        auto text = stored();
        newRow_ = true;
        keyQuery_.clear();
        let(*session_, u"lngRowData", Long{0});
        return text;
    }

    /// Fills the mandatory fields of a new row: the last entry of each list, then a number that is unique.
    void fillIn(Form& form)
    {
        for (Control* control : form.Controls)
            if (auto* list = dynamic_cast<ComboBox*>(control); list != nullptr && list->ListCount() > 0)
                Acts().choose(*list, list->ListCount() - 1);
        ++newRows_;
        for (Control* control : form.Controls)
            if (auto* box = dynamic_cast<TextBox*>(control); box != nullptr && box->Text().empty())
                Acts().type(*box, decimalText(newRows_));
    }

    static void write(TextBox& box, StringView text, bool pasted)
    {
        Acts acts;
        acts.select(box, 0, static_cast<Long>(box.Text().size()));
        if (pasted)
            acts.paste(box, text);
        else if (acts.key(box, Key::Delete))
            acts.type(box, text);
    }

    /// Writes the text and accepts. Gives what the box showed then, or nullopt if the dialog refused it.
    std::optional<String> put(StringView text, bool pasted)
    {
        messages_ = 1;
        open([&](Form& form) {
            if (newRow_)
                fillIn(form);
            TextBox* box = boxOn(form);
            if (box == nullptr)
                return;
            write(*box, text, pasted);
            given_ = box->Text();
            limit_ = static_cast<std::size_t>(box->MaxLength());
            messages_ = 0;
            accept(form);
            if (messages_ == 0 && form.Visible())
                fault(u"ni se cierra ni dice por qué");
        });
        return messages_ == 0 ? std::optional(given_) : std::nullopt;
    }

    /// Whether the box shows what it was given: pasting truncates at code 0 and at the limit, typing skips
    /// code 0 and each character that does not fit (one of two units may leave the last place free).
    bool keeps(String text, bool pasted) const
    {
        if (pasted)
            text.resize(std::min(text.find(u'\0'), text.size()));
        else
            std::erase(text, u'\0');
        if (limit_ == 0 || text.size() <= limit_)
            return given_ == text;
        return pasted ? given_ == cut(text, limit_) : given_.size() + 1 >= limit_ && given_.size() <= limit_;
    }

    /// Seeks a session and a row in which the box accepts input, and reads the box there.
    std::optional<String> firstToWriteIn()
    {
        constexpr Long mostRows = 9;
        for (const bool service : {false, true})
            for (Long row = 1; row <= mostRows; ++row) {
                let(*session_, u"MTP", service);
                let(*session_, u"lngRowData", row);
                if (auto text = stored())
                    return text;
            }
        return std::nullopt;
    }

    void tryBox()
    {
        const std::optional<String> original = firstToWriteIn();
        if (!original)
            return fault(u"no se puede escribir en él");
        for (const StringView text : harmless)
            for (const bool pasted : {true, false})
                put(text, pasted);
        put(letters, false);
        const bool filters = given_ != letters;
        if (!put(*original, true))
            return fault(u"no vuelve a tomar lo que tenía");
        known_ = std::exchange(statements_, {});
        tryOdd(filters);
        if (!put(*original, true) || stored() != original)
            fault(u"no vuelve a tomar lo que tenía");
        if (roadTo(box_.dialog) == nullptr)
            tryNewRows(filters);
    }

    /// The same for new rows, with a sample of the texts.
    void tryNewRows(bool filters)
    {
        newRow_ = true;
        let(*session_, u"lngRowData", Long{0});
        statements_.clear();
        bool taken = false;
        for (const StringView text : harmless)
            for (const bool pasted : {true, false})
                if (put(text, pasted) && !keyQuery_.empty()) {
                    taken = true;
                    static_cast<void>(storedNew());
                }
        known_ = std::exchange(statements_, {});
        if (taken)
            tryOdd(filters);
        newRow_ = false;
    }

    /// Whether the stored text equals the shown one, up to the normalisation that some dialogs do.
    bool isKept(const String& shown, const String& stored) const
    {
        if (stored == shown)
            return true;
        if (box_.dialog == u"frmEnfermedad")
            return stored == cut(doubled(shown), limit_);
        if (box_.dialog == u"frmTipoIva")
            return Replace(stored, u" ", u"") ==
                   Replace(shown + (shown.ends_with(u'%') ? u"" : u"%"), u" ", u"");
        return box_.name == u"txtPuntuacion" && IsNumeric(shown) && IsNumeric(stored) &&
               CDbl(shown) == CDbl(stored);
    }

    /// Injection check: whether this skeleton also ran for harmless texts. A bare word in the place of a
    /// number passes if the database refused the statement.
    bool isOwn(const String& statement, bool refused) const
    {
        const bool isWord = !given_.empty() && std::ranges::all_of(given_, [](char16_t unit) {
            return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
        });
        if (!refused || !isWord)
            return known_.contains(statement);
        const String updated = Replace(statement, u"=" + given_, u"=#");
        return known_.contains(Replace(updated, u"," + given_ + u")", u",#)"));
    }

    /// Whether the dialog accepted the text.
    bool tryText(StringView text, bool pasted, bool filters)
    {
        const auto shown = put(text, pasted);
        const auto kept = !shown ? shown : newRow_ ? storedNew() : stored();
        if (shown && (!kept || !isKept(*shown, *kept)))
            fault(u"se mostró " + zv::quoted(*shown) + u" y se guardó " + zv::quoted(kept.value_or(u"")));
        if (!filters && !keeps(String(text), pasted))
            fault(u"se mostró " + zv::quoted(given_));
        for (const String& statement : std::exchange(statements_, {}))
            if (!isOwn(statement, !shown))
                fault(u"hizo " + statement);
        return shown.has_value();
    }

    void tryOdd(bool filters)
    {
        Long kept = 0;
        Long refused = 0;
        const std::vector<String> texts = oddTexts();
        constexpr std::size_t share = 4;
        const auto step = static_cast<std::size_t>(wishes_.every) * (newRow_ ? share : 1);
        for (std::size_t i = boxes_ % step; i < texts.size(); i += step)
            for (const bool pasted : {true, false}) {
                doing_ = String(newRow_ ? u" (fila nueva)" : u"") + (pasted ? u" pegado " : u" tecleado ") +
                         zv::quoted(cut(texts[i], 60));
                ++(tryText(texts[i], pasted, filters) ? kept : refused);
            }
        doing_.clear();
        out_ << toUtf8(box_.dialog + u" " + box_.name) << (newRow_ ? " (filas nuevas): " : ": ") << kept
             << " guardados, " << refused << " rechazados" << (filters ? ", con filtro" : "") << '\n'
             << std::flush;
    }

    const TextTrial& wishes_;
    std::ostream& out_;
    Desktop* before_;
    Region region_ = region();
    FreshSchool fresh_;
    std::shared_ptr<PropertyBag> session_;
    BoxPlace box_;
    String doing_;                     ///< The present text, described for faults.
    std::function<void(Form&)> visit_; ///< Callback for the dialog of the box.
    String given_;                     ///< What the box showed last, when it was accepted.
    std::size_t limit_ = 0;            ///< MaxLength of the box then; 0: unlimited.
    bool newRow_ = false;
    Long newRows_ = 5000; ///< Counter for unique numbers; four digits, as some boxes demand.
    String keyQuery_;     ///< Query for the key of the row inserted last.
    int messages_ = 0;
    std::set<String> statements_; ///< Skeletons of those run since the last check.
    std::set<String> known_;      ///< Skeletons of those run for harmless texts.
    std::size_t boxes_ = 0;
    Long faults_ = 0;
};

} // namespace

bool tryTexts(const TextTrial& trial, std::ostream& out) { return Trial(trial, out).run(); }

} // namespace zv
