// The module's own cost: a change of one row through the facade, without a screen, against the bare SQLite
// interface running the very same statements (recorded from the first); and a deletion guard against the
// number of rows that refer. Both in one run, with synchronous OFF so that the disk does not hide what we
// add. Prints the ratios at the end.

#include "Stage.h"

#include "forms/Acts.h"

#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

constexpr Byte maritalStates = 65;

/// A person who types a new text and presses "Aceptar".
class Typist final : public BusyPerson {
public:
    void runModal(Form& form) override
    {
        Acts acts(form);
        Control& box = form.reach(u"txtIdioma");
        acts.type(box, (++changes_ & 1) != 0 ? u"Casada" : u"Soltera");
        acts.click(form.reach(u"cmdIdioma", 0));
    }

private:
    unsigned changes_ = 0;
};

/// Set while main has one: it must end before the single instances do.
Stage* current = nullptr;
Stage& stage() { return *current; }

void throughTheFacade(benchmark::State& state)
{
    for (auto _ : state)
        stage().facade(1).ActivarFormulario(maritalStates);
}

void bareInterface(benchmark::State& state)
{
    runBare(state, stage().file,
            stage().recorded([] { stage().facade(1).ActivarFormulario(maritalStates); }));
}

void guard(benchmark::State& state)
{
    const auto referring = static_cast<Long>(state.range(0));
    stage().centro->executeNative(u"DELETE FROM Personal");
    stage().centro->executeNative(
        statement(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<{}) "
                  u"INSERT INTO Personal (IDPersonal,CodEstadoCivil) SELECT i,1 FROM n",
                  {referring}));
    for (auto _ : state)
        benchmark::DoNotOptimize(stage().facade(1).Eliminar(maritalStates));
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const auto steady = [](benchmark::internal::Benchmark* run) {
        run->Repetitions(7)->ReportAggregatesOnly()->MinTime(0.2)->Unit(benchmark::kMicrosecond);
    };
    steady(benchmark::RegisterBenchmark("fachada", throughTheFacade));
    steady(benchmark::RegisterBenchmark("desnuda", bareInterface));
    for (const int referring : {10, 10000, 1000000})
        steady(benchmark::RegisterBenchmark("guarda", guard)->Arg(referring));
    Typist person;
    Stage set("zv_bench_fila", person);
    set.centro->executeNative(u"INSERT INTO EstadoCivil VALUES (1,'Soltera')");
    current = &set;
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    const auto ratio = [&](const char* what, const char* ours, const char* peer, double most) {
        std::cout << what << ": " << medians.of(ours) / medians.of(peer) << " (at most " << most << ")\n";
    };
    ratio("change of a row / bare interface", "fachada", "desnuda", 1.5);
    ratio("guard with 10000 / 10 referring rows", "guarda10000", "guarda10", 1.3);
    ratio("guard with 1000000 / 10 referring rows", "guarda1000000", "guarda10", 1.3);
    return 0;
}
