#include "data/history/Cuts.h"

#include "data/Statement.h"
#include "data/history/Rows.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"

#include <set>

namespace zv::history {
namespace {

constexpr StringView notes = u"ConsejoOrientador_Nota";

/// Saves of dialogs that save with several statements, which wrote something and whose end was never noted.
std::vector<Long> unended(Connection& centro)
{
    String tables;
    for (const StringView each : savedInParts)
        tables += (tables.empty() ? u"" : u",") + textLiteral(each);
    std::vector<Long> result;
    const RecordsetPtr rows = centro.executeNative(
        statement(u"SELECT Guardado FROM HistorialAsiento WHERE Guardado<>0 GROUP BY Guardado HAVING "
                  u"MAX(CASE WHEN Clase={} THEN 1 ELSE 0 END)=0 AND MAX(CASE WHEN Clase IN ({},{},{}) AND "
                  u"Tabla IN ({}) THEN 1 ELSE 0 END)=1 ORDER BY Guardado DESC",
                  {static_cast<Long>(Kind::ended), static_cast<Long>(Kind::added),
                   static_cast<Long>(Kind::changed), static_cast<Long>(Kind::removed), tables}));
    for (; !rows->Eof(); rows->MoveNext())
        result.push_back(CLng(rows->Fields(u"Guardado")));
    return result;
}

/// The number in a row's key: that of its first column.
Long keyNumber(StringView row)
{
    return numberIn(row.substr(row.find(u'=') + 1, row.find(u' ') - row.find(u'=') - 1)).value_or(0);
}

/// A column of the first row that meets the condition; Null if there is none.
Value one(Connection& centro, StringView table, StringView column, StringView condition)
{
    const std::vector<Fields> rows = rowsOf(centro, table, {String(column)}, condition);
    return rows.empty() ? Value(Null()) : rows.front().front().value;
}

/// What an entry itself says of a column.
const Value* said(const Fields& before, const Fields& after, StringView column)
{
    const Value* const now = valueOf(after, column);
    return now != nullptr ? now : valueOf(before, column);
}

void describeBank(Connection& centro, Cut& cut, const std::vector<Entry>& written)
{
    Long bank = cut.by.creates ? 0 : cut.by.row;
    String number;
    std::set<String> branches;
    for (const Entry& each : written) {
        if (sameName(each.table, u"Sucursal")) {
            branches.insert(each.row);
            continue;
        }
        bank = keyNumber(each.row);
        const Fields before = fieldsIn(each.before);
        const Fields after = fieldsIn(each.after);
        if (const Value* value = said(before, after, u"Numero"))
            number = String() + *value;
    }
    cut.units = branches.size() == 1 ? u"sucursal" : u"sucursales";
    cut.written = static_cast<Long>(branches.size());
    if (number.empty())
        number = String() + one(centro, u"Banco", u"Numero", u"IDBanco=" + decimalText(bank));
    cut.what = u"del banco " + number;
}

void describeSection(Connection& centro, Cut& cut, const std::vector<Entry>& written)
{
    std::set<Long> pupils;
    bool guidance = false;
    for (const Entry& each : written) {
        if (!sameName(each.table, notes)) {
            pupils.insert(keyNumber(each.row));
            continue;
        }
        guidance = true;
        const Fields before = fieldsIn(each.before);
        const Fields after = fieldsIn(each.after);
        const Value* const pupil = said(before, after, u"codAlumno");
        pupils.insert(CLng(pupil != nullptr ? *pupil : one(centro, notes, u"codAlumno", each.row)));
    }
    cut.what = guidance ? u"del consejo orientador" : u"de los informes";
    cut.units = pupils.size() == 1 ? u"alumno" : u"alumnos";
    cut.written = static_cast<Long>(pupils.size());
    const String section =
        decimalText(CLng(one(centro, u"Alumno", u"codseccion", u"IDAlumno=" + decimalText(*pupils.begin()))));
    cut.what += u" de " + CStr(one(centro, u"Seccion", u"Descripcion", u"IDSeccion=" + section));
    const Long course = CLng(one(centro, u"Seccion", u"CodCurso", u"IDSeccion=" + section));
    cut.what += u" de " + CStr(one(centro, u"Curso", u"Descripcion", u"IDCurso=" + decimalText(course)));
    cut.of = static_cast<Long>(rowsOf(centro, u"Alumno", {u"IDAlumno"}, u"codseccion=" + section).size());
    if (cut.of > 1)
        cut.units = u"alumnos";
}

/// Says what the save was of, as far as the tables still tell.
void describe(Connection& centro, Cut& cut, const std::vector<Entry>& written)
{
    cut.what = u"en " + cut.by.dialog;
    try {
        const StringView table = written.front().table;
        if (sameName(table, u"Banco") || sameName(table, u"Sucursal"))
            describeBank(centro, cut, written);
        else
            describeSection(centro, cut, written);
    } catch (const RuntimeError&) {
        // A table that has gone, a pupil without a section: the rest is told.
    }
}

} // namespace

std::vector<Cut> cuts(Connection& centro, const Gone& gone)
{
    std::vector<Cut> result;
    for (const Long save : unended(centro)) {
        std::vector<Entry> written = entries(centro, statement(u"Guardado={}", {save}));
        const Entry first = written.front();
        const auto sign = momentIn(written.back().moment);
        std::erase_if(written,
                      [](const Entry& each) { return !wroteRow(each.kind) || !isSavedInParts(each.table); });
        Cut cut{.save = save,
                .opening = first.opening,
                .moment = first.moment,
                .by = openingOf(centro, first.opening)};
        if (!sign || !gone(cut.by.station, *sign))
            continue;
        describe(centro, cut, written);
        result.push_back(std::move(cut));
    }
    return result;
}

String told(const Cut& cut, Seconds now)
{
    const String when = whenTold(cut.moment, now);
    const String written = decimalText(cut.written);
    const String begun =
        u"El guardado " + cut.what + (when.starts_with(u"el ") ? u" d" : u" de ") + when + u" se cortó";
    if (cut.of != 0)
        return begun + u": " + written + u" de " + decimalText(cut.of) + u" " + cut.units + u".";
    if (cut.written != 0)
        return begun + u": " + written + u" " + cut.units + u".";
    return begun + u".";
}

Plan takeBack(HistoryConnection& centro, const Cut& cut, const Opening& by)
{
    return undo(centro, {.save = cut.save}, by, [&] {
        Appending log(centro);
        log.add({.kind = Kind::ended, .opening = cut.opening, .save = cut.save});
        log.finish();
    });
}

} // namespace zv::history
