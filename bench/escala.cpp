// Many stations at one school: how often two of them draw the same key, and what that costs. Each station is
// a process that creates marital states through the dialog, with its real insert loop; before each statement
// it waits as long as a network would let it wait, so that far more stations than processors stand between
// their key and their row at the same time. Also what a connection costs.
//
//   bench_escala [URL [MILLISECONDS [ROWS]]]     a place for a new school, or one that is there, or else a
//                                                file of its own; 2 ms and 10 rows a station if not given

#include "Stage.h"

#include "data/odbc/OdbcEngine.h"
#include "forms/Acts.h"
#include "suite/CentroApi.h"

#include <atomic>
#include <chrono>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace zv;
using namespace zv::bench;
using Clock = std::chrono::steady_clock;

constexpr Byte maritalStates = 65;

/// Counters shared by the processes of a round, in shared memory.
struct Counts {
    std::atomic<bool> started;
    std::atomic<int> ready;
    std::atomic<int> inserts;
    std::atomic<int> worst; ///< The most inserts that one row took.
    std::atomic<int> messages;
};

/// Decorator of a connection that simulates network latency.
class FarConnection final : public ConnectionDecorator {
public:
    FarConnection(ConnectionPtr inner, std::chrono::milliseconds away, int* inserts)
        : ConnectionDecorator(std::move(inner)), away_(away), inserts_(inserts)
    {}
    RecordsetPtr Execute(StringView sql) override
    {
        std::this_thread::sleep_for(away_);
        *inserts_ += sql.starts_with(u"Insert") ? 1 : 0;
        return inner()->Execute(sql);
    }

private:
    std::chrono::milliseconds away_;
    int* inserts_;
};

class Typist final : public BusyPerson {
public:
    explicit Typist(Counts& counts) : counts_(counts) {}
    void runModal(Form& form) override
    {
        Acts acts;
        acts.type(form.reach(u"txtIdioma"), u"Casada");
        acts.click(form.reach(u"cmdIdioma", 0));
    }
    void messageBox(StringView, Integer, StringView) override { ++counts_.messages; }

private:
    Counts& counts_;
};

struct Round {
    String url;
    std::chrono::milliseconds away;
    int rows;
};

void station(const Round& round, Counts& counts)
{
    int inserts = 0;
    School school = openSchool(round.url);
    school.centro = std::make_shared<FarConnection>(school.centro, round.away, &inserts);
    school.borrado = std::make_shared<FarConnection>(school.borrado, round.away, &inserts);
    Typist person(counts);
    useDesktop(&person);
    const auto session = newHostSession(school);
    let(*session, u"Accion", Long{cConstCol::NUEVO});
    cAsignarDatos facade;
    facade.ObtenerDatos(session);
    ++counts.ready;
    while (!counts.started)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    for (int row = 0; row < round.rows; ++row) {
        const int before = inserts;
        facade.ActivarFormulario(maritalStates);
        const int took = inserts - before;
        for (int worst = counts.worst.load();
             took > worst && !counts.worst.compare_exchange_weak(worst, took);)
            ;
    }
    counts.inserts += inserts;
}

/// Runs a round; returns its seconds until the last station has its rows.
double play(const Round& round, int stations, Counts& counts)
{
    new (&counts) Counts{};
    for (int each = 0; each < stations; ++each) {
        if (fork() == 0) {
            station(round, counts);
            std::_Exit(0);
        }
    }
    while (counts.ready < stations)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const auto start = Clock::now();
    counts.started = true;
    while (wait(nullptr) > 0)
        ;
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Time for one row, as a station sees it.
void stations(benchmark::State& state, const Round& round, Counts& counts)
{
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        const double seconds = play(round, count, counts);
        const double rows = count * round.rows;
        state.SetIterationTime(seconds / round.rows);
        state.counters["inserts_a_row"] = counts.inserts.load() / rows;
        state.counters["worst_row"] = counts.worst.load();
        state.counters["rows_a_second"] = rows / seconds;
        state.counters["messages"] = counts.messages.load();
    }
}

/// Cost of opening a school's three connections.
void connections(benchmark::State& state, const Round& round)
{
    for (auto _ : state)
        openSchool(round.url);
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    const auto folder = std::filesystem::temp_directory_path() / "zv_bench_escala";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const Round round{argc > 1 ? fromUtf8(argv[1]) : u"sqlite:" + (folder / "colegio.db").u16string(),
                      std::chrono::milliseconds(argc > 2 ? std::atoi(argv[2]) : 2),
                      argc > 3 ? std::atoi(argv[3]) : 10};
    registerEngine(sqliteEngine(Durability::off));
    registerEngine(odbcEngine());
    installModule();
    if (!engineOf(round.url).exists(locationOf(round.url)))
        createSchool(round.url);
    auto* counts = static_cast<Counts*>(
        mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    steady(benchmark::RegisterBenchmark("conexiones", connections, std::cref(round)))->UseRealTime();
    timed(benchmark::RegisterBenchmark("puestos", stations, std::cref(round), std::ref(*counts)), 3)
        ->RangeMultiplier(2)
        ->Range(1, 256);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::filesystem::remove_all(folder);
    return 0;
}
