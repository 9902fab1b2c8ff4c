// Guidance and primary report, a whole section at a time and without a screen, against the bare SQLite
// interface running the very same statements (recorded from the dialogs). Both in one run, with synchronous
// OFF so that the disk does not hide what we add. Prints the ratios at the end.

#include "Classroom.h"

#include "data/Dialect.h"
#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

/// Non-owning global for the benchmark functions. main owns it, so that it is destroyed before the single
/// instances are.
Classroom* current = nullptr;

Form& report(benchmark::State& state)
{
    if (state.range(0) == 12)
        return single<frmInfIndPrim>();
    single<frmConsejoOrientador1>().cboSecciones.ListIndex = state.range(0) == 30 ? Long{0} : Long{1};
    return single<frmConsejoOrientador>();
}

void dialog(benchmark::State& state, int button)
{
    Form& form = report(state);
    for (auto _ : state)
        current->play(form, button);
}

void bareInterface(benchmark::State& state, int button)
{
    Form& form = report(state);
    std::vector<String> statements = current->stage.recorded([&] { current->play(form, button); });
    for (String& sql : statements) {
        String room;
        sql = String(inDialect(sql, {.joinTexts = u"||", .deleteWithStar = false}, room));
    }
    runBare(state, current->stage, statements);
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    constexpr std::pair<const char*, int> acts[] = {{"leer", 1}, {"guardar", 0}};
    for (const int size : {12, 30, 300})
        for (const auto& [name, button] : acts) {
            steady(benchmark::RegisterBenchmark(name, dialog, button))->Arg(size);
            steady(
                benchmark::RegisterBenchmark((std::string(name) + "_desnuda").c_str(), bareInterface, button))
                ->Arg(size);
        }
    Classroom set("zv_bench_informes", 12);
    current = &set;
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    const auto ratio = [&](const std::string& what, const std::string& ours, const std::string& peer,
                           double share) {
        std::cout << what << ": " << medians.of(ours) / medians.of(peer) / share << " (at most 1.3)\n";
    };
    for (const auto& [what, size] :
         {std::pair("primary report, 30 pupils of 12 subjects", "12"), std::pair("guidance of 30", "30"),
          std::pair("guidance of 300", "300")}) {
        ratio(std::string(what) + ", load / bare", std::string("leer") + size,
              std::string("leer_desnuda") + size, 1);
        ratio(std::string(what) + ", load and save / bare", std::string("guardar") + size,
              std::string("guardar_desnuda") + size, 1);
    }
    ratio("guidance, load, a pupil of 300 / of 30", "leer300", "leer30", 10);
    ratio("guidance, load and save, a pupil of 300 / of 30", "guardar300", "guardar30", 10);
    return 0;
}
