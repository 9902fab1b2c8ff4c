// What the network costs: acts of people at dialogs whose school is on a PostgreSQL server, through a relay
// that holds up what passes as a network would, against the very same statements given to libpq one by one,
// and in a pipeline that waits for no answer. Counts statements and round trips.
//
//   bench_red DSN SOCKET
//
// a data source of a server on this machine, and the path of the server's Unix socket;
// tests/servidor/postgres starts one. A school is made there, and taken away.

#include "Classroom.h"
#include "Office.h"
#include "Relay.h"

#include "data/Dialect.h"
#include "data/odbc/OdbcEngine.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <iostream>
#include <libpq-fe.h>

namespace {

using namespace zv;
using namespace zv::bench;
using Clock = Relay::Clock;

constexpr const char* schema = "zv_bench_red";

/// The bare library on the same way to the same school.
class Peer {
public:
    Peer(const Relay& relay, Connection& centro)
    {
        const RecordsetPtr who = centro.executeNative(u"SELECT current_user AS u, current_database() AS d");
        link_ = PQconnectdb(
            ("host=127.0.0.1 sslmode=disable gssencmode=disable port=" + std::to_string(relay.port) +
             " user=" + toUtf8(CStr(who->Fields(u"u"))) + " dbname=" + toUtf8(CStr(who->Fields(u"d"))))
                .c_str());
        one("SET search_path TO " + std::string(schema));
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer() { PQfinish(link_); }

    void oneByOne(const std::vector<std::string>& statements)
    {
        for (const std::string& each : statements)
            one(each);
    }
    /// Each a transaction of its own. A part at a time, so that nobody's room for what was not read yet
    /// fills.
    void pipelined(const std::vector<std::string>& statements)
    {
        constexpr std::size_t part = 100;
        PQenterPipelineMode(link_);
        for (std::size_t begin = 0; begin < statements.size(); begin += part) {
            const std::size_t end = std::min(begin + part, statements.size());
            for (std::size_t each = begin; each < end; ++each) {
                PQsendQueryParams(link_, statements[each].c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0);
                PQpipelineSync(link_);
            }
            for (std::size_t synced = begin; synced < end;) {
                PGresult* const result = PQgetResult(link_);
                synced += read(result) == PGRES_PIPELINE_SYNC ? 1 : 0;
            }
        }
        PQexitPipelineMode(link_);
    }
    void one(const std::string& statement) { read(PQexec(link_, statement.c_str())); }

private:
    /// A statement that fails is none that was measured. No result: the next statement's are to come.
    ExecStatusType read(PGresult* result)
    {
        const ExecStatusType status = result ? PQresultStatus(result) : PGRES_EMPTY_QUERY;
        if (status == PGRES_FATAL_ERROR || status == PGRES_PIPELINE_ABORTED ||
            PQstatus(link_) != CONNECTION_OK)
            throw std::runtime_error(PQerrorMessage(link_));
        for (int row = 0; row < PQntuples(result); ++row)
            for (int column = 0; column < PQnfields(result); ++column)
                benchmark::DoNotOptimize(PQgetvalue(result, row, column));
        PQclear(result);
        return status;
    }

    PGconn* link_ = nullptr;
};

struct Act {
    const char* name;
    std::function<void()> play;
    std::vector<std::string> statements = {};
};

void registerAct(Relay& relay, Act& act, Peer& peer)
{
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"modulo", act.play},
        {"libpq", [&] { peer.oneByOne(act.statements); }},
        {"seguidas", [&] { peer.pipelined(act.statements); }}};
    for (const int away : {0, 2, 20})
        for (const auto& [who, play] : ways)
            timed(benchmark::RegisterBenchmark(
                      (std::string(who) + "_" + act.name).c_str(),
                      [&relay, &act, play = play](benchmark::State& state) {
                          for (auto _ : state) {
                              relay.away = std::chrono::milliseconds(state.range(0));
                              relay.trips = 0;
                              const auto begun = Clock::now();
                              play();
                              state.SetIterationTime(
                                  std::chrono::duration<double>(Clock::now() - begun).count());
                              state.counters["trips"] = relay.trips.load();
                              state.counters["statements"] = static_cast<double>(act.statements.size());
                          }
                      }),
                  away == 0 ? 9 : 3)
                ->Arg(away);
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    if (argc != 3) {
        std::cerr << "bench_red DSN SOCKET\n";
        return 2;
    }
    Relay& relay = *new Relay(argv[2]); // Its threads use it to the end.
    const std::string way = "DSN=" + std::string(argv[1]) +
                            ";SERVER=127.0.0.1;PORT=" + std::to_string(relay.port) +
                            ";SSLmode=disable;ESQUEMA=" + schema;
    const auto engine = odbcEngine();
    const auto clear = [&] {
        for (const Database which : everyDatabase)
            engine->remove(fromUtf8(way), which);
    };
    clear(); // What one left that was killed.
    registerEngine(odbcEngine());
    {
        ClassroomAt<SchoolStage> room(u"odbc:" + fromUtf8(way), Long{3});
        room.stage.centro->executeNative(u"INSERT INTO EstadoCivil VALUES (1,'Soltera')");
        Typist typist;
        const auto report = [&room](auto& form, int button) {
            return [&room, &form, button] { room.play(form, button); };
        };
        single<frmConsejoOrientador1>().cboSecciones.ListIndex = Long{0};
        Act acts[] = {
            {"fila",
             [&] {
                 useDesktop(&typist);
                 room.stage.facade(1).ActivarFormulario(maritalStates);
             }},
            {"consejo_abrir", report(single<frmConsejoOrientador>(), 1)},
            {"consejo_guardar", report(single<frmConsejoOrientador>(), 0)},
        };
        Peer peer(relay, *room.stage.centro);
        for (Act& act : acts) {
            act.play();
            for (const String& statement : room.stage.recorded(act.play)) {
                String translated;
                act.statements.push_back(
                    toUtf8(inDialect(statement, {.joinTexts = u"||", .deleteWithStar = false}, translated)));
            }
            registerAct(relay, act, peer);
        }
        benchmark::RunSpecifiedBenchmarks();
        relay.away = std::chrono::milliseconds(0);
    }
    clear();
    return 0;
}
