// A change of one row through the facade and without a screen, against the bare SQLite interface running the
// very same statements (recorded from the first), and against Qt's own model and mapper doing the same edit
// of the same row; and a deletion guard against the number of rows that refer. All in one run on one file
// system, with synchronous OFF so that the disk does not hide what each adds, and the change once more as it
// is delivered, with FULL. Prints the ratios at the end, and before, what each tells the database.

#include "Office.h"
#include "QtEdit.h"
#include "data/Statement.h"

#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

void throughTheFacade(benchmark::State& state, const Office& office)
{
    for (auto _ : state)
        office.change();
}

void bareInterface(benchmark::State& state, const Office& office)
{
    // Two changes, there and back: an engine that is told what is there already has nothing to write.
    runBare(state, office, office.recorded([&] {
        office.change();
        office.change();
    }),
            2);
}

/// Whether Qt's objects are created for each change, as our dialog is loaded, or reused.
enum class Parts { anew, kept };

void throughQt(benchmark::State& state, const Office& office, Parts parts)
{
    QtEdit edit(office.file, office.settings);
    Typist person;
    edit.open();
    for (auto _ : state) {
        if (parts == Parts::anew)
            edit.open();
        edit.change(QString::fromStdU16String(person.next()));
    }
}

void guard(benchmark::State& state, const Stage& stage)
{
    const auto referring = static_cast<Long>(state.range(0));
    stage.centro->executeNative(u"DELETE FROM Personal");
    stage.centro->executeNative(
        statement(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<{}) "
                  u"INSERT INTO Personal (IDPersonal,CodEstadoCivil) SELECT i,1 FROM n",
                  {referring}));
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.facade(1).Eliminar(maritalStates));
}

/// Writes the context of the report: versions, and the statements of one change by the module and by Qt.
void tellHead(const Office& office)
{
    std::string ours;
    for (const String& sql : office.recorded([&] { office.change(); }))
        ours += (ours.empty() ? "" : "\n") + toUtf8(sql);
    benchmark::AddCustomContext("sqlite", sqlite3_libversion());
    benchmark::AddCustomContext("qt", qVersion());
    benchmark::AddCustomContext("compilador", "g++ " __VERSION__);
    benchmark::AddCustomContext("instrucciones_modulo", ours);
    QtEdit edit(office.file, office.settings);
    std::string theirs;
    for (const std::string& sql : edit.recorded([&] {
             edit.open();
             edit.change(QStringLiteral("Viuda"));
         }))
        theirs += (theirs.empty() ? "" : "\n") + sql;
    benchmark::AddCustomContext("instrucciones_qt", theirs);
}

void registerChange(const std::string& where, const Office& office)
{
    const auto add = [&](const char* who, auto function, auto... more) {
        benchmark::internal::Benchmark* run =
            steady(benchmark::RegisterBenchmark((who + where).c_str(), function, std::cref(office), more...));
        if (!where.empty())
            run->UseRealTime();
    };
    add("fachada", throughTheFacade);
    add("desnuda", bareInterface);
    add("qt_nuevo", throughQt, Parts::anew);
    add("qt_abierto", throughQt, Parts::kept);
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    Typist person;
    const Office memory("zv_bench_fila", person);
    const Office disk("zv_bench_fila_disco", person, Durability::full);
    const Office guarded("zv_bench_guarda", person);
    for (const Office* office : {&memory, &disk, &guarded})
        office->centro->executeNative(u"INSERT INTO EstadoCivil VALUES (1,'Soltera')");
    tellHead(memory);
    registerChange("", memory);
    registerChange("_disco", disk);
    for (const int referring : {10, 10000, 1000000})
        steady(benchmark::RegisterBenchmark("guarda", guard, std::cref(guarded)))->Arg(referring);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    const auto ratio = [&](const char* what, double ours, double peer, const char* most) {
        std::cout << what << ": " << ours / peer << most << '\n';
    };
    const double ours = medians.of("fachada");
    ratio("change of a row / bare interface", ours, medians.of("desnuda"), " (at most 1.5)");
    ratio("change of a row / Qt's parts made anew", ours, medians.of("qt_nuevo"), "");
    ratio("change of a row / Qt's parts kept", ours, medians.of("qt_abierto"), "");
    ratio("the same on disk / bare interface", medians.elapsed("fachada_disco"),
          medians.elapsed("desnuda_disco"), "");
    for (const char* referring : {"10000", "1000000"})
        ratio((std::string("guard with ") + referring + " / 10 referring rows").c_str(),
              medians.of(std::string("guarda") + referring), medians.of("guarda10"), " (at most 1.3)");
    return 0;
}
