#include "zvconf/Historial.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/HistoryEngine.h"
#include "module/Module.h"
#include "robot/Import.h"
#include "robot/ImportFields.h"
#include "robot/ScratchSchool.h"
#include "runtime/Convert.h"
#include "runtime/Json.h"
#include "runtime/WholeFile.h"
#include "suite/sodium/KeyFile.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace zv::zvconf {
namespace {

/// Lines between two reports of the progress.
constexpr Long stride = 500;

std::vector<CsvLine> linesOf(const String& file)
{
    const auto bytes = wholeFile(file);
    if (!bytes)
        throw std::runtime_error("«" + toUtf8(file) +
                                 "» no se puede leer: compruebe el nombre y el permiso.");
    return csvLines(csvText(*bytes));
}

/// By its number, or by what the list is called.
const ModuleNode& nodeOf(const String& word)
{
    for (const ModuleNode& each : moduleNodes())
        if (decimalText(each.number) == word || sameWord(each.title, word))
            return each;
    throw UsageError(u"«" + word +
                     u"» no es el número de un nodo ni el nombre de una lista: los dice «zvconf nodos».");
}

/// What is told of an import, as text or as JSON, and what it comes to.
class Report {
public:
    Report(const Options& options, std::size_t lines)
        : url_(withoutPassword(options.values(u"--bd").front())), json_(options.has(u"--json")),
          rehearsal_(options.has(u"--ensayo")), lines_(static_cast<Long>(lines))
    {}

    void tell(const ImportedLine& line, Long opening)
    {
        ++(line.added ? added_ : refused_);
        if (json_) {
            JsonObject object;
            object.number(u"linea", line.line).raw(u"entra", line.added ? u"true" : u"false");
            if (!line.message.empty())
                object.text(u"mensaje", line.message);
            printLine(object.str());
        } else {
            printLine(
                statement(u"Línea {}: {}entra{}", {line.line, line.added ? u"" : u"no ",
                                                   line.message.empty() ? u"." : u": " + line.message}));
        }
        // At once, as the import may be cut.
        if (line.added && opening_ == 0 && opening != 0)
            std::cerr << toUtf8(undoing(opening_ = opening)) << '\n';
        // Nothing more is added of which nobody would be told.
        if (!std::cout.flush())
            throw std::runtime_error(
                "No se puede escribir el resultado, y se deja de importar: la salida está "
                "cerrada o el disco lleno.");
        if (const Long done = added_ + refused_; done % stride == 0)
            std::cerr << done << " de " << lines_ << " líneas\n";
    }

    bool hasLines() const { return added_ + refused_ > 0; }
    int end() const
    {
        if (json_) {
            JsonObject object;
            object.number(u"entran", added_).number(u"no_entran", refused_);
            object.raw(u"ensayo", rehearsal_ ? u"true" : u"false");
            if (opening_ != 0)
                object.number(u"apertura", opening_);
            else
                object.raw(u"apertura", u"null");
            printLine(object.str());
        } else {
            printLine(statement(u"Líneas que entran: {}. Que no: {}.", {added_, refused_}));
            if (rehearsal_)
                printLine(u"Era un ensayo: no se ha guardado nada.");
            else if (opening_ != 0)
                printLine(undoing(opening_));
        }
        return refused_ == 0 ? done : found;
    }

private:
    String undoing(Long opening) const
    {
        return statement(u"Se deshace entero con: zvconf historial deshacer --apertura {} --si --bd '{}'",
                         {opening, Replace(url_, u"'", u"'\\''")});
    }

    String url_;
    bool json_;
    bool rehearsal_;
    Long lines_;
    Long added_ = 0;
    Long refused_ = 0;
    Long opening_ = 0;
};

} // namespace

int importar(Arguments arguments)
{
    const Options options(arguments, {{u"--nodo", 1}, {u"--bd", 1}, {u"--ensayo"}, {u"--json"}}, 1);
    const String& file = options.operand(0, u"el fichero de la lista");
    const String& url = options.values(u"--bd").front();
    const ModuleNode& node = nodeOf(options.values(u"--nodo").front());
    const std::vector<CsvLine> lines = linesOf(file);
    installModule();
    Report report(options, lines.empty() ? 0 : lines.size() - 1);
    Opening by = ourselves();
    by.dialog = node.dialog;
    by.creates = true;
    if (options.has(u"--ensayo")) {
        const ScratchSchool rehearsal(url);
        importList(rehearsal.school(), node, lines, by,
                   [&](const ImportedLine& line) { report.tell(line, 0); });
        return report.end();
    }
    const School school = history::withHistory(openSchool(url), url);
    // Not with a key that does not open what is there: two keys would be mixed.
    if (sameWord(node.table, u"Enfermedad"))
        checkKey(school);
    const history::HistoryConnection* const history = history::historyOf(school.centro);
    if (history == nullptr)
        std::cerr
            << "Este centro no tiene activado el historial: lo que se importa no se podrá deshacer de una "
               "vez. Se activa antes con «zvconf historial activar».\n";
    try {
        importList(school, node, lines, by, [&](const ImportedLine& line) {
            report.tell(line, history != nullptr ? history->openingNumber() : 0);
        });
    } catch (const ImportError&) {
        if (report.hasLines())
            report.end();
        throw;
    }
    return report.end();
}

} // namespace zv::zvconf
