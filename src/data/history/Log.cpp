#include "data/history/Log.h"

#include "data/Statement.h"
#include "data/Transaction.h"
#include "data/history/Chain.h"
#include "runtime/Convert.h"
#include "runtime/Time.h"

#include <algorithm>
#include <limits>

namespace zv::history {
namespace {

constexpr StringView entryTable[] = {
    u"CREATE TABLE HistorialAsiento (Numero INTEGER NOT NULL PRIMARY KEY, Momento VARCHAR(30) NOT NULL, "
    u"Clase SMALLINT NOT NULL, Apertura INTEGER NOT NULL, Guardado INTEGER NOT NULL, Tabla VARCHAR(64) NOT "
    u"NULL, "
    u"Fila VARCHAR(250) NOT NULL, Antes TEXT, Despues TEXT, Sal VARCHAR(24), Huella VARCHAR(44) NOT NULL, "
    u"Enlace VARCHAR(44) NOT NULL)",
    u"CREATE INDEX HistorialAsiento_Fila ON HistorialAsiento (Tabla, Fila)",
};
constexpr StringView headTable[] = {
    u"CREATE TABLE HistorialCabeza (Numero INTEGER NOT NULL, Enlace VARCHAR(44), Activo SMALLINT NOT NULL, "
    u"PlazoMeses INTEGER NOT NULL)",
    u"INSERT INTO HistorialCabeza (Numero, Enlace, Activo, PlazoMeses) VALUES (0, '', -1, 0)",
};

/// Format of these tables. A later one says its number in a column behind the others of the head.
constexpr Long format = 1;
constexpr std::size_t headColumns = 4;

/// The head's row; fails where a newer version keeps the history.
RecordsetPtr headRows(Connection& centro)
{
    RecordsetPtr rows = centro.executeNative(u"SELECT * FROM HistorialCabeza");
    if (!rows->Eof() && rows->row().size() > headColumns && CLng(rows->row()[headColumns]) > format)
        throw RuntimeError(
            failure::otherData,
            u"El historial de este centro lo lleva una versión más nueva de este programa: ponga "
            u"esa en este equipo.");
    return rows;
}

/// The columns of an entry, in the order in which entryOf() takes them.
constexpr StringView columns =
    u"Numero, Momento, Clase, Apertura, Guardado, Tabla, Fila, Antes, Despues, Sal, Huella, Enlace";

String textIn(const Value& value) { return value.isNull() ? String() : CStr(value); }

Entry entryOf(const std::vector<Value>& row)
{
    return {.number = CLng(row[0]),
            .moment = textIn(row[1]),
            .kind = static_cast<Kind>(CInt(row[2])),
            .opening = CLng(row[3]),
            .save = CLng(row[4]),
            .table = textIn(row[5]),
            .row = textIn(row[6]),
            .before = textIn(row[7]),
            .after = textIn(row[8]),
            .salt = textIn(row[9]),
            .digest = textIn(row[10]),
            .link = textIn(row[11])};
}

/// NULL for an empty text: that is how an entry stands that never had one, or was erased.
String given(const String& text) { return text.empty() ? u"NULL" : textLiteral(text); }

/// Bound for what a statement is given at once.
constexpr int rowsOfAStatement = 50;

/// Entries of a page when all are read.
constexpr Long page = 10000;

/// The first number that meets the condition; Null if none does.
Value firstBehind(Connection& centro, StringView where)
{
    return centro.executeNative(u"SELECT MIN(Numero) FROM HistorialAsiento" + String(where))->row().front();
}

void switchTo(Connection& centro, bool on)
{
    centro.executeNative(statement(u"UPDATE HistorialCabeza SET Activo={}", {on}));
}

void moveHead(Connection& centro, const Head& to)
{
    centro.executeNative(
        statement(u"UPDATE HistorialCabeza SET Numero={}, Enlace={}", {to.number, textLiteral(to.link)}));
}

/// Does what needs a table; whether it is there.
template <class Work>
bool whereThere(Work work)
{
    try {
        work();
        return true;
    } catch (const DataError& error) {
        if (error.number() != failure::tableMissing)
            throw;
        return false;
    }
}

} // namespace

void requireKnown(Connection& centro)
{
    whereThere([&] { headRows(centro); });
}

void activate(Connection& centro)
{
    requireKnown(centro);
    const bool hasHead = whereThere([&] { switchTo(centro, true); });
    const bool hasEntries = whereThere([&] { firstBehind(centro, u""); });
    if (hasHead && hasEntries)
        return;
    Transaction transaction(centro);
    if (!hasEntries)
        for (const StringView each : entryTable)
            centro.executeNative(each);
    if (!hasHead)
        for (const StringView each : headTable)
            centro.executeNative(each);
    if (!hasHead && hasEntries)
        forEach(centro, u"Numero=(SELECT MAX(Numero) FROM HistorialAsiento)", [&](const Entry& newest) {
            moveHead(centro, {newest.number, newest.link});
            return false;
        });
    transaction.commit();
}

void deactivate(Connection& centro)
{
    requireKnown(centro);
    whereThere([&] { switchTo(centro, false); });
}

bool isActive(Connection& centro)
{
    bool active = false;
    whereThere([&] {
        const RecordsetPtr rows = headRows(centro);
        active = !rows->Eof() && CLng(rows->Fields(u"Activo")) != 0;
    });
    return active;
}

Head headOf(Connection& centro)
{
    const RecordsetPtr rows = headRows(centro);
    return {CLng(rows->Fields(u"Numero")), textIn(rows->Fields(u"Enlace"))};
}

Appending::Appending(Connection& centro) : centro_(centro)
{
    // A write and no reading first: on every engine it takes the lock, and waits for who holds it.
    centro_.executeNative(u"UPDATE HistorialCabeza SET Numero=Numero");
    head_ = headOf(centro_);
    moment_ = momentNow();
}

Long Appending::add(Entry entry)
{
    entry.number = next();
    entry.moment = moment_;
    if (!entry.before.empty() || !entry.after.empty())
        entry.salt = freshSalt();
    entry.digest = digestOf(entry);
    entry.link = linkOf(head_.link, entry);
    rows_ += statement(
        rows_.empty() ? u"({},{},{},{},{},{},{},{},{},{},{},{})" : u",({},{},{},{},{},{},{},{},{},{},{},{})",
        {entry.number, textLiteral(entry.moment), static_cast<Long>(entry.kind), entry.opening, entry.save,
         textLiteral(entry.table), textLiteral(entry.row), given(entry.before), given(entry.after),
         given(entry.salt), textLiteral(entry.digest), textLiteral(entry.link)});
    if (++waiting_ == rowsOfAStatement)
        write();
    head_ = {entry.number, entry.link};
    changed_ = true;
    return entry.number;
}

void Appending::write()
{
    if (waiting_ == 0)
        return;
    centro_.executeNative(u"INSERT INTO HistorialAsiento (" + String(columns) + u") VALUES " + rows_);
    rows_.clear();
    waiting_ = 0;
}

void Appending::finish()
{
    write();
    if (changed_)
        moveHead(centro_, head_);
}

void forEach(Connection& centro, StringView condition, const std::function<bool(const Entry&)>& use,
             bool newestFirst)
{
    const auto read = [&](StringView where) {
        String query = u"SELECT " + String(columns) + u" FROM HistorialAsiento";
        if (!where.empty())
            query += u" WHERE " + String(where);
        query += newestFirst ? u" ORDER BY Numero DESC" : u" ORDER BY Numero";
        for (const RecordsetPtr rows = centro.executeNative(query); !rows->Eof(); rows->MoveNext())
            if (!use(entryOf(rows->row())))
                return false;
        return true;
    };
    if (!condition.empty() || newestFirst) {
        read(condition);
        return;
    }
    // A driver may fetch all rows of a statement at once: a whole history comes in pages.
    for (Value first = firstBehind(centro, u""); !first.isNull();) {
        const Long last = std::min(CLng(first), std::numeric_limits<Long>::max() - page) + page;
        if (!read(statement(u"Numero>={} AND Numero<={}", {first, last})))
            return;
        first = firstBehind(centro, statement(u" WHERE Numero>{}", {last}));
    }
}

std::vector<Entry> entries(Connection& centro, StringView condition, bool newestFirst)
{
    std::vector<Entry> result;
    forEach(
        centro, condition,
        [&](const Entry& each) {
            result.push_back(each);
            return true;
        },
        newestFirst);
    return result;
}

} // namespace zv::history
