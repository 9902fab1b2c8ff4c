#include "suite/Registrations.h"

#include "runtime/Convert.h"

#include <ctime>
#include <optional>

namespace zv {

namespace {

String literal(StringView text) { return u"'" + Replace(text, u"'", u"''") + u"'"; }

String keyCondition(StringView form, Long row)
{
    return statement(u" WHERE LOWER(Formulario)={} AND Fila={}", {literal(lowerName(form)), row});
}

String now()
{
    char text[sizeof "2024-09-12 08:30:00"] = "";
    const std::time_t seconds = std::time(nullptr);
    if (const std::tm* local = std::localtime(&seconds))
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", local);
    return fromUtf8(text);
}

/// A school whose stations never registered a row has no table yet.
template <class Use, class Result>
Result whereTableExists(Use&& use, Result otherwise)
{
    try {
        return use();
    } catch (const RuntimeError& error) {
        if (error.number() != failure::tableMissing)
            throw;
        return otherwise;
    }
}

void createTable(Connection& centro)
{
    centro.executeNative(
        u"CREATE TABLE RegistroActivo (Formulario VARCHAR(50) NOT NULL, Fila INTEGER NOT NULL, "
        u"IDUsuario SMALLINT, Estacion VARCHAR(250), Momento VARCHAR(30), "
        u"PRIMARY KEY (Formulario, Fila))");
}

/// False if the row is registered already.
bool insertRegistration(Connection& centro, const String& insert)
{
    try {
        centro.Execute(insert);
        return true;
    } catch (const RuntimeError& error) {
        if (error.number() != failure::keyExists)
            throw;
        return false;
    }
}

bool insertMakingTable(Connection& centro, const String& insert)
{
    try {
        return insertRegistration(centro, insert);
    } catch (const RuntimeError& error) {
        if (error.number() != failure::tableMissing)
            throw;
    }
    try {
        createTable(centro);
    } catch (const RuntimeError&) {
        // Another station may have made it meanwhile; if none did, the next statement says what is wrong.
        return insertRegistration(centro, insert);
    }
    return insertRegistration(centro, insert);
}

struct Holder {
    Integer user;
    String station;
};

std::optional<Holder> holderOf(Connection& centro, StringView form, Long row)
{
    const RecordsetPtr rows =
        centro.Execute(u"SELECT IDUsuario, Estacion FROM RegistroActivo" + keyCondition(form, row));
    if (rows->Eof())
        return std::nullopt;
    return Holder{CInt(rows->Fields(u"IDUsuario")), String() + rows->Fields(u"Estacion")};
}

} // namespace

std::vector<Registration> registrations(Connection& centro)
{
    const auto read = [&] {
        std::vector<Registration> result;
        const RecordsetPtr rows = centro.Execute(u"SELECT Formulario, Fila, IDUsuario, Estacion, Momento "
                                                 u"FROM RegistroActivo ORDER BY LOWER(Formulario), Fila");
        for (; !rows->Eof(); rows->MoveNext()) {
            const String station = String() + rows->Fields(u"Estacion");
            result.push_back({CStr(rows->Fields(u"Formulario")), CLng(rows->Fields(u"Fila")),
                              CInt(rows->Fields(u"IDUsuario")), station, String() + rows->Fields(u"Momento"),
                              thisStation().gone(station)});
        }
        return result;
    };
    return whereTableExists(read, std::vector<Registration>{});
}

bool release(Connection& centro, StringView form, Long row)
{
    const auto free = [&] {
        if (!holderOf(centro, form, row))
            return false;
        centro.Execute(u"DELETE FROM RegistroActivo" + keyCondition(form, row));
        return true;
    };
    return whereTableExists(free, false);
}

int releaseAll(Connection& centro)
{
    const auto free = [&] {
        const Long count =
            CLng(centro.Execute(u"SELECT COUNT(*) AS Filas FROM RegistroActivo")->Fields(u"Filas"));
        centro.Execute(u"DELETE FROM RegistroActivo");
        return int{count};
    };
    return whereTableExists(free, 0);
}

bool registerRow(Connection& centro, const Station& station, StringView form, Long row, Integer user)
{
    // A round that decides nothing means that another station changed the row between two of our statements.
    constexpr int rounds = 100;
    const String mine = literal(station.identity);
    for (int round = 0; round < rounds; ++round) {
        const String moment = literal(now());
        if (insertMakingTable(
                centro,
                statement(u"INSERT INTO RegistroActivo (Formulario, Fila, IDUsuario, Estacion, Momento) "
                          u"VALUES ({},{},{},{},{})",
                          {literal(form), row, user, mine, moment})))
            return false;
        const auto holder = holderOf(centro, form, row);
        if (!holder)
            continue;
        if (holder->user != user && !station.gone(holder->station))
            return true;
        centro.Execute(statement(u"UPDATE RegistroActivo SET IDUsuario={}, Estacion={}, Momento={}",
                                 {user, mine, moment}) +
                       keyCondition(form, row) + u" AND Estacion=" + literal(holder->station) +
                       statement(u" AND IDUsuario={}", {holder->user}));
        const auto after = holderOf(centro, form, row);
        if (after && after->user == user)
            return false;
    }
    throw DataError(failure::locked, "", u"La fila cambia de manos sin cesar.", u"RegistroActivo");
}

void unregisterRow(Connection& centro, const Station& station, StringView form, Long row)
{
    const auto free = [&] {
        centro.Execute(u"DELETE FROM RegistroActivo" + keyCondition(form, row) + u" AND Estacion=" +
                       literal(station.identity));
        return true;
    };
    whereTableExists(free, true);
}

} // namespace zv
