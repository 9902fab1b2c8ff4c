// What the history costs: the change of one row through the facade, and the save of a section of 30 pupils in
// the primary report (for each a deletion, a row and 35 ratings), each with the history on and off, in one
// run and with synchronous FULL as it is delivered; the verification of a long chain; and the bytes of a
// school's ten years. Prints the ratios at the end.

#include "Classroom.h"
#include "Office.h"

#include "data/history/Verify.h"
#include "runtime/Convert.h"

#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

/// Seven subjects of five ratings.
constexpr Long subjects = 7;
constexpr Long longChain = 1000000;
/// A school of 1,000 pupils in a year: 34 sections, whose reports are saved in three sittings of each of
/// three evaluations, and changes of rows of the lists.
constexpr double sectionsSaved = 34 * 3 * 3;
constexpr double rowsChanged = 2000;

void row(benchmark::State& state, const Office& office)
{
    for (auto _ : state)
        office.change();
}

void section(benchmark::State& state, Classroom& room)
{
    for (auto _ : state) {
        room.play(single<frmInfIndPrim>(), 0);
        state.SetIterationTime(room.tutor.pressed.count());
    }
}

/// A chain of entries such as ratings leave.
struct LongChain {
    Tutor person;
    Stage stage{"zv_bench_cadena", person, Durability::full, true};

    LongChain()
    {
        stage.centro->executeNative(u"BEGIN");
        history::Appending log(*stage.centro);
        for (Long i = 1; i <= longChain; ++i)
            log.add(
                {.kind = history::Kind::added,
                 .opening = 1,
                 .save = 1,
                 .table = u"Alumno_InfIndPrim",
                 .row = statement(u"CodAlumno={} AND codMateria={} AND codTipo=1", {i % 1000, i % 7}),
                 .after = statement(u"CodAlumno={},codMateria={},codTipo=1,codResp=3", {i % 1000, i % 7})});
        log.finish();
        stage.centro->executeNative(u"COMMIT");
    }
};

void verification(benchmark::State& state, std::unique_ptr<LongChain>& chain)
{
    if (!chain)
        chain = std::make_unique<LongChain>();
    for (auto _ : state) {
        const history::Verification result = history::verify(*chain->stage.centro);
        if (result.defects != 0 || result.entries != longChain)
            state.SkipWithError("the chain does not verify");
    }
}

/// Growth of the file by an act, in bytes.
double growth(const Stage& stage, int times, const std::function<void()>& act)
{
    const auto bytes = [&] {
        return 4096.0 * CDbl(stage.centro->executeNative(u"PRAGMA page_count")->row().front());
    };
    const double before = bytes();
    for (int i = 0; i < times; ++i)
        act();
    return (bytes() - before) / times;
}

void size(benchmark::State& state, const Office& office, Classroom& room)
{
    double ofRow = 0;
    double ofSection = 0;
    for (auto _ : state) {
        ofRow = growth(office, 100, [&] { office.change(); });
        ofSection = growth(room.stage, 2, [&] { room.play(single<frmInfIndPrim>(), 0); });
    }
    state.counters["fila_bytes"] = ofRow;
    state.counters["seccion_bytes"] = ofSection;
    state.counters["MB"] = 10 * (sectionsSaved * ofSection + rowsChanged * ofRow) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    Typist typist;
    Office office("zv_bench_sin", typist, Durability::full);
    Office noted("zv_bench_con", typist, Durability::full, true);
    Classroom room("zv_bench_aula_sin", subjects, Durability::full);
    Classroom notedRoom("zv_bench_aula_con", subjects, Durability::full, true);
    for (const Office* each : {&office, &noted})
        each->centro->executeNative(u"INSERT INTO EstadoCivil VALUES (1,'Soltera')");
    std::unique_ptr<LongChain> chain;
    const auto rows = [&](const char* name, const Office& with) {
        steady(benchmark::RegisterBenchmark(name, [&typist, &with](benchmark::State& state) {
            useDesktop(&typist);
            row(state, with);
        }))->UseRealTime();
    };
    rows("fila_sin", office);
    rows("fila_con", noted);
    timed(benchmark::RegisterBenchmark("seccion_sin", section, std::ref(room)), 5);
    timed(benchmark::RegisterBenchmark("seccion_con", section, std::ref(notedRoom)), 5);
    const auto once = [](benchmark::internal::Benchmark* run) {
        run->Iterations(1)->Repetitions(3)->DisplayAggregatesOnly()->Unit(benchmark::kMillisecond);
    };
    once(benchmark::RegisterBenchmark("comprobar", verification, std::ref(chain)));
    once(benchmark::RegisterBenchmark("tamano", [&](benchmark::State& state) {
        useDesktop(&typist);
        size(state, noted, notedRoom);
    }));
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::cout << "change of a row with the history / without: "
              << medians.elapsed("fila_con") / medians.elapsed("fila_sin") << " (at most 1.5)\n"
              << "section of 30 with the history / without: "
              << medians.elapsed("seccion_con") / medians.elapsed("seccion_sin") << " (at most 2)\n"
              << "seconds of processor for a million entries: " << medians.of("comprobar") / 1e3
              << " (at most 10)\n"
              << "MB of ten years of 1,000 pupils: " << medians.counter("tamano", "MB") << '\n';
    return 0;
}
