#include "zvhost/HistoryDialogs.h"

#include "data/Schema.h"
#include "data/Statement.h"
#include "data/history/Log.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"
#include "runtime/Time.h"
#include "zvhost/ListDialog.h"
#include "zvhost/Told.h"

#include <QPushButton>

#include <algorithm>

namespace zv::host {
namespace {

using history::Entry;
using history::Field;
using history::Fields;
using history::Kind;
using history::Loss;

constexpr ListColumn lostColumns[] = {{u"De"}, {u"Campo"}, {u"Había"}, {u"Lo guardó"}, {u"Hay ahora"}};
constexpr ListColumn historyColumns[] = {{u"Cuándo"}, {u"Persona"}, {u"De"},   {u"Qué"},
                                         {u"Campo"},  {u"Había"},   {u"Quedó"}};
/// Entries that a window reads, the newest: nobody reads more, and a list of years would take long.
constexpr std::size_t most = 5000;

Value asValue(const QString& text) { return fromQt(text); }

/// What one save did to a row.
struct Change {
    Entry entry; ///< The first of the row's in that save.
    Fields was = {};
    Fields is = {};
    bool came = false;
    bool went = false;
};

/// Joins the entries of a row in one save: ratings that were deleted and inserted the same did not change.
std::vector<Change> changesIn(Connection& centro, const String& condition)
{
    std::vector<Entry> found;
    history::forEach(
        centro, condition,
        [&](const Entry& each) {
            found.push_back(each);
            return found.size() < most;
        },
        true);
    std::ranges::reverse(found);
    std::vector<Change> changes;
    std::map<std::tuple<Long, String, String>, std::size_t> places;
    for (const Entry& each : found) {
        const auto [place, isNew] = places.try_emplace(
            {each.save == 0 ? -each.number : each.save, each.table, each.row}, changes.size());
        if (isNew)
            changes.push_back({.entry = each, .came = each.kind == Kind::added});
        Change& change = changes[place->second];
        change.went = each.kind == Kind::removed;
        for (const Field& field : history::fieldsIn(each.before))
            if (history::valueOf(change.was, field.column) == nullptr &&
                history::valueOf(change.is, field.column) == nullptr)
                change.was.push_back(field);
        for (const Field& field : history::fieldsIn(each.after)) {
            std::erase_if(change.is, [&](const Field& old) { return sameName(old.column, field.column); });
            change.is.push_back(field);
        }
        if (change.went)
            change.is.clear();
    }
    std::ranges::reverse(changes);
    return changes;
}

/// The lines of a change, one for each field that differs.
void addRows(std::vector<Row>& rows, Told& told, const Opening& by, const Change& change)
{
    const Fields& known = change.came ? change.is : change.was;
    const auto line = [&](const QString& field, const QString& was, const QString& is) {
        const QString what = change.came   ? QStringLiteral("alta")
                             : change.went ? QStringLiteral("baja")
                                           : QStringLiteral("cambio");
        rows.push_back({static_cast<Long>(rows.size()),
                        {asValue(Told::time(change.entry.moment)), asValue(told.person(by)),
                         asValue(told.row(change.entry.table, change.entry.row, known)), asValue(what),
                         asValue(field), asValue(was), asValue(is)}});
    };
    const schema::Table* table = schema::table(change.entry.table);
    const auto names = [&](StringView column) {
        // What the row is called already: its key, its pupil.
        return table != nullptr && std::ranges::any_of(table->columns(), [&](const schema::Column& each) {
                   return sameName(each.name, column) &&
                          (each.refersTo == u"Alumno" ||
                           &each - table->columns().data() < static_cast<std::ptrdiff_t>(table->keyColumns));
               });
    };
    Fields columns = change.was;
    for (const Field& each : change.is)
        if (history::valueOf(columns, each.column) == nullptr)
            columns.push_back(each);
    for (const Field& each : columns) {
        const Value* was = history::valueOf(change.was, each.column);
        const Value* is = history::valueOf(change.is, each.column);
        if (names(each.column) || (was != nullptr && is != nullptr && history::same(*was, *is)))
            continue;
        const auto shown = [&](const Value* value) {
            return value == nullptr ? QString() : told.value(change.entry.table, each.column, *value);
        };
        const QString before = shown(was);
        const QString after = shown(is);
        if (before != after)
            line(told.field(change.entry.table, change.entry.row, each.column, known), before, after);
    }
}

/// A field of a loss, by its place.
struct LostField {
    const Loss* loss;
    std::size_t field;
};

/// The lines of a loss, one for each field.
void addRows(std::vector<Row>& rows, std::vector<LostField>& places, Told& told, Host& host, const Loss& loss)
{
    const std::optional<Fields> now =
        history::rowNow(*host.school().centro, *schema::table(loss.table), loss.row);
    const Fields& known = !loss.whole.empty() ? loss.whole : now ? *now : loss.was;
    const bool unknown = loss.author.moment.empty() && loss.author.opening.user == 0;
    const QString when =
        loss.author.moment.empty() ? QStringLiteral("ahora") : Told::time(loss.author.moment);
    const QString whose =
        unknown ? QString() : told.person(loss.author.opening) + QStringLiteral(", ") + when;
    for (std::size_t i = 0; i < loss.was.size(); ++i) {
        const Field& each = loss.was[i];
        const Value* is = now ? history::valueOf(*now, each.column) : nullptr;
        rows.push_back({static_cast<Long>(rows.size()),
                        {asValue(told.row(loss.table, loss.row, known)),
                         asValue(told.field(loss.table, loss.row, each.column, known)),
                         asValue(told.value(loss.table, each.column, each.value)), asValue(whose),
                         asValue(is == nullptr ? QString() : told.value(loss.table, each.column, *is))}});
        places.push_back({&loss, i});
    }
}

} // namespace

void showLosses(QWidget* parent, Host& host, const std::vector<Loss>& losses,
                const std::function<void(const std::vector<Loss>&)>& gives)
{
    std::vector<LostField> places;
    const auto read = [&] {
        Told told(host);
        std::vector<Row> rows;
        places.clear();
        for (const Loss& loss : losses)
            addRows(rows, places, told, host, loss);
        return rows;
    };
    ListDialog dialog(parent, QStringLiteral("Lo que se ha perdido"), lostColumns, read);
    dialog.setObjectName(QStringLiteral("perdido"));
    const auto back = [&](const ListDialog::Rows& chosen) {
        std::vector<Loss> some;
        for (const std::size_t each : chosen) {
            some.push_back(*places[each].loss);
            // A row that goes back whole has its other fields with it.
            if (some.back().whole.empty())
                some.back().was = {places[each].loss->was[places[each].field]};
        }
        gives(some);
    };
    if (gives)
        dialog.command(QStringLiteral("&Devolver"), QStringLiteral("No se ha podido devolver."), back,
                       ListDialog::Selects::several);
    dialog.run(QStringLiteral("No falta nada."));
}

Asked historyOfRow(Host& host, const Node& node, Long key, const QString& name)
{
    String condition = statement(u"(Tabla='{}' AND Fila='{}={}')", {Value(node.table), Value(node.key), key});
    // A bank with its branches, also those that are gone.
    if (sameName(node.table, u"Banco")) {
        const String bank = statement(u"%CodBanco={},%", {key});
        String branches;
        const RecordsetPtr rows = host.school().centro->Execute(
            statement(u"SELECT IDSucursal FROM Sucursal WHERE CodBanco={}", {key}));
        for (; !rows->Eof(); rows->MoveNext())
            branches += statement(u" OR Fila='IDSucursal={}'", {CLng(rows->row().front())});
        condition += u" OR (Tabla='Sucursal' AND (Antes LIKE '" + bank + u"' OR Despues LIKE '" + bank +
                     u"'" + branches + u"))";
    }
    return {QStringLiteral("Historial de «%1»").arg(name), condition};
}

Asked historyOfList(const Node& node)
{
    return {QStringLiteral("Historial de «%1»").arg(toQt(node.name)), u"Tabla=" + textLiteral(node.table)};
}

Asked historyOfSection(Host& host, const Node& node, Long section, const QString& name)
{
    const bool advice = sameName(node.form, u"frmConsejoOrientador1");
    Connection& centro = *host.school().centro;
    String rows;
    const auto add = [&](const String& condition) { rows += (rows.empty() ? u"" : u" OR ") + condition; };
    const String query =
        advice ? statement(u"SELECT IDCORNota FROM ConsejoOrientador_Nota WHERE codSeccion={}", {section})
               : statement(u"SELECT IDAlumno FROM Alumno WHERE codseccion={}", {section});
    for (const RecordsetPtr found = centro.Execute(query); !found->Eof(); found->MoveNext()) {
        const Long key = CLng(found->row().front());
        add(advice ? statement(u"Fila='IDCORNota={}'", {key})
                   : statement(u"Fila='CodAlumno={}' OR Fila LIKE 'CodAlumno={} AND %'", {key, key}));
    }
    const StringView tables = advice ? u"Tabla='ConsejoOrientador_Nota'"
                                     : u"Tabla IN ('Alumno_InfInd','Alumno_InfIndESO','Alumno_InfIndPrim')";
    return {QStringLiteral("Historial de «%1»").arg(name),
            String(tables) + u" AND (" + (rows.empty() ? String(u"Numero=0") : rows) + u")"};
}

void showHistory(QWidget* parent, Host& host, const Asked& asked)
{
    ListDialog dialog(parent, asked.title, historyColumns, [&] {
        Told told(host);
        std::map<Long, Opening> openings;
        std::vector<Row> rows;
        for (const Change& each :
             changesIn(*host.school().centro, u"Clase IN (2,3,4) AND (" + asked.condition + u")")) {
            const auto [place, isNew] = openings.try_emplace(each.entry.opening);
            if (isNew)
                place->second = history::openingOf(*host.school().centro, each.entry.opening);
            addRows(rows, told, place->second, each);
        }
        return rows;
    });
    dialog.setObjectName(QStringLiteral("historial"));
    dialog.run(QStringLiteral("El historial no sabe de ningún cambio."));
}

} // namespace zv::host
