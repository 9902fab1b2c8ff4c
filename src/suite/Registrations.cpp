#include "suite/Registrations.h"

#include "data/Statement.h"
#include "runtime/Convert.h"
#include "runtime/Single.h"
#include "suite/Moment.h"

#include <algorithm>
#include <map>
#include <optional>

namespace zv {

namespace {

String keyCondition(StringView form, Long row)
{
    return statement(u" WHERE LOWER(Formulario)={} AND Fila={}", {textLiteral(lowerName(form)), row});
}

/// Common clock of all stations: the server's, else this machine's.
Seconds now(Connection& centro)
{
    try {
        const RecordsetPtr rows = centro.Execute(u"SELECT CURRENT_TIMESTAMP AS Ahora");
        if (const auto time = momentIn(String() + rows->Fields(u"Ahora")))
            return *time;
    } catch (const RuntimeError& error) {
        if (error.number() == failure::connectionLost || error.number() == failure::locked)
            throw;
    }
    return timeHere();
}

bool isGone(const Station& station, StringView other, std::chrono::seconds silence)
{
    return station.gone(other) || (silence > longestSilence && !(station.alive && station.alive(other)));
}

/// Flag (as a single instance, so that a reset clears it): this process registered a row and sends
/// heartbeats.
struct HasRegistered {};

/// Default for a missing table, which the first registration creates.
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

/// Insert as test-and-set: the unique key decides between stations. False if the row is registered already.
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
        // Race: another station may have created it meanwhile. If not, the insert fails and says why.
        return insertRegistration(centro, insert);
    }
    return insertRegistration(centro, insert);
}

struct Holder {
    Integer user;
    String station;
    String moment; ///< Raw text of the column.
};

std::optional<Holder> holderOf(Connection& centro, StringView form, Long row)
{
    const RecordsetPtr rows =
        centro.Execute(u"SELECT IDUsuario, Estacion, Momento FROM RegistroActivo" + keyCondition(form, row));
    if (rows->Eof())
        return std::nullopt;
    return Holder{CInt(rows->Fields(u"IDUsuario")), String() + rows->Fields(u"Estacion"),
                  String() + rows->Fields(u"Momento")};
}

/// Compare-and-swap condition: the row unchanged since it was read, so that a heartbeat in between keeps it
/// from being taken over.
String unchanged(StringView form, Long row, const Holder& holder)
{
    return keyCondition(form, row) + u" AND Estacion=" + textLiteral(holder.station) +
           statement(u" AND IDUsuario={}", {holder.user}) +
           (holder.moment.empty() ? u"" : u" AND Momento=" + textLiteral(holder.moment));
}

} // namespace

std::vector<Registration> registrations(Connection& centro)
{
    const auto read = [&] {
        std::vector<Registration> result;
        const Seconds time = now(centro);
        const RecordsetPtr rows = centro.Execute(u"SELECT Formulario, Fila, IDUsuario, Estacion, Momento "
                                                 u"FROM RegistroActivo ORDER BY LOWER(Formulario), Fila");
        for (; !rows->Eof(); rows->MoveNext()) {
            const String station = String() + rows->Fields(u"Estacion");
            const Moment moment(String() + rows->Fields(u"Momento"));
            result.push_back({CStr(rows->Fields(u"Formulario")), CLng(rows->Fields(u"Fila")),
                              CInt(rows->Fields(u"IDUsuario")), station, moment.shown(time),
                              isGone(thisStation(), station, moment.silence(time))});
        }
        return result;
    };
    return whereTableExists(read, std::vector<Registration>{});
}

std::function<bool(StringView station, Seconds sign)> goneStations(Connection& centro)
{
    const auto read = [&] {
        std::map<String, std::chrono::seconds> silent;
        const Seconds time = now(centro);
        const RecordsetPtr rows = centro.Execute(u"SELECT Estacion, Momento FROM RegistroActivo");
        for (; !rows->Eof(); rows->MoveNext()) {
            const auto silence = Moment(String() + rows->Fields(u"Momento")).silence(time);
            const auto [known, first] = silent.try_emplace(String() + rows->Fields(u"Estacion"), silence);
            known->second = std::min(known->second, silence);
        }
        return silent;
    };
    return [silent = whereTableExists(read, std::map<String, std::chrono::seconds>{})](StringView station,
                                                                                       Seconds sign) {
        const auto known = silent.find(String(station));
        const std::chrono::seconds silence = timeHere() - sign;
        return isGone(thisStation(), station,
                      known == silent.end() ? silence : std::min(silence, known->second));
    };
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

namespace {

enum class Sharing { withOwnUser, never };

/// Gives who holds the row; nullopt: acquired.
std::optional<Holder> acquire(Connection& centro, const Station& station, StringView form, Long row,
                              Integer user, Sharing sharing)
{
    // Optimistic retry loop: a round is inconclusive if another station changed the row between two
    // statements.
    constexpr int rounds = 100;
    const String mine = textLiteral(station.identity);
    single<HasRegistered>();
    for (int round = 0; round < rounds; ++round) {
        const Seconds time = now(centro);
        const String moment = textLiteral(momentText(time));
        if (insertMakingTable(
                centro,
                statement(u"INSERT INTO RegistroActivo (Formulario, Fila, IDUsuario, Estacion, Momento) "
                          u"VALUES ({},{},{},{},{})",
                          {textLiteral(form), row, user, mine, moment})))
            return std::nullopt;
        auto holder = holderOf(centro, form, row);
        if (!holder)
            continue;
        const bool shares = sharing == Sharing::withOwnUser && holder->user == user;
        if (!shares && !isGone(station, holder->station, Moment(holder->moment).silence(time)))
            return holder;
        centro.Execute(statement(u"UPDATE RegistroActivo SET IDUsuario={}, Estacion={}, Momento={}",
                                 {user, mine, moment}) +
                       unchanged(form, row, *holder));
        const auto after = holderOf(centro, form, row);
        if (after && after->user == user &&
            (sharing == Sharing::withOwnUser || after->station == station.identity))
            return std::nullopt;
    }
    throw DataError(failure::locked, "", u"La fila cambia de manos sin cesar.", u"RegistroActivo");
}

} // namespace

bool registerRow(Connection& centro, const Station& station, StringView form, Long row, Integer user)
{
    return acquire(centro, station, form, row, user, Sharing::withOwnUser).has_value();
}

std::optional<Registration> registerRowAlone(Connection& centro, const Station& station, StringView form,
                                             Long row, Integer user)
{
    const std::optional<Holder> other = acquire(centro, station, form, row, user, Sharing::never);
    if (!other)
        return std::nullopt;
    return Registration{.form = String(form),
                        .row = row,
                        .user = other->user,
                        .station = other->station,
                        .moment = Moment(other->moment).shown(now(centro))};
}

void giveSign(Connection& centro, const Station& station)
{
    if (!hasSingle<HasRegistered>())
        return;
    const auto sign = [&] {
        const Seconds time = now(centro);
        const RecordsetPtr rows =
            centro.executeNative(u"SELECT Formulario, Fila, Momento FROM RegistroActivo WHERE Estacion=" +
                                 textLiteral(station.identity));
        for (; !rows->Eof(); rows->MoveNext()) {
            const String moment = String() + rows->Fields(u"Momento");
            centro.executeNative(
                u"UPDATE RegistroActivo SET Momento=" + textLiteral(Moment(moment).signedAt(time)) +
                keyCondition(CStr(rows->Fields(u"Formulario")), CLng(rows->Fields(u"Fila"))) +
                u" AND Estacion=" + textLiteral(station.identity));
        }
        return true;
    };
    whereTableExists(sign, true);
}

void unregisterRow(Connection& centro, const Station& station, StringView form, Long row)
{
    const auto free = [&] {
        centro.Execute(u"DELETE FROM RegistroActivo" + keyCondition(form, row) + u" AND Estacion=" +
                       textLiteral(station.identity));
        return true;
    };
    whereTableExists(free, true);
}

} // namespace zv
