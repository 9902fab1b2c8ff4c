// The journal's cost, without a screen: a key in a text of a pupil's report with its journal on the disk
// within a second, against the same key without one; and a row that is opened, changed by ten keys and
// accepted. Processor time of the whole process, the thread that syncs included. Prints what it adds at the
// end.

#include "Classroom.h"

#include "forms/Acts.h"
#include "journal/Recorder.h"
#include "session/DialogDirectory.h"

#include <functional>
#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

/// Person who does what the benchmark says as soon as a dialog opens.
class Typing final : public BusyPerson {
public:
    std::function<void(Form&)> does;
    void runModal(Form& form) override { does(form); }
};

Classroom* current = nullptr;

void inDialog(Form& form, const std::function<void(Form&)>& does)
{
    Typing person;
    person.does = does;
    useDesktop(&person);
    form.Show();
    useDesktop(nullptr);
}

/// On the last page, since only what is shown takes keys.
void key(benchmark::State& state, bool kept)
{
    journal::recording(kept);
    current->stage.facade(0);
    inDialog(single<frmInfIndPrim>(), [&](Form& form) {
        Acts acts;
        auto& dialog = dynamic_cast<frmInfIndPrim&>(form);
        acts.clickTab(dialog.TabInfInd, dialog.TabInfInd.tabCount());
        acts.type(dialog.otros.txtDificultad, std::u16string(150, u'x'));
        for (auto _ : state) {
            acts.type(dialog.otros.txtDificultad, u"a");
            acts.key(dialog.otros.txtDificultad, Key::Backspace);
        }
        acts.close(form);
    });
}

void row(benchmark::State& state, bool kept)
{
    journal::recording(kept);
    Form& form = dialogs().find(u"frmEstadoCivil").instance();
    for (auto _ : state) {
        current->stage.facade(1);
        inDialog(form, [](Form& shown) {
            Acts acts;
            Control& box = *shown.find(u"txtIdioma");
            for (int letter = 0; letter < 10; ++letter)
                acts.type(box, u"a");
            acts.click(*shown.find(u"cmdIdioma", 0));
        });
    }
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    for (const auto& [name, kept] : {std::pair("sin", false), std::pair("con", true)}) {
        steady(benchmark::RegisterBenchmark((std::string("tecla_") + name).c_str(), key, kept))
            ->MeasureProcessCPUTime();
        steady(benchmark::RegisterBenchmark((std::string("fila_") + name).c_str(), row, kept))
            ->MeasureProcessCPUTime();
    }
    Classroom set("zv_bench_diario", 12, Durability::full);
    set.stage.centro->executeNative(
        u"INSERT INTO EstadoCivil (IDEstadoCivil,Descripcion) VALUES (1,'Soltero')");
    journal::record(set.stage.folder / "diario");
    current = &set;
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    journal::recording(false);
    std::cout << "a key with its journal, more by: "
              << (medians.of("tecla_con") - medians.of("tecla_sin")) / 2 << " µs (at most 20)\n"
              << "a row changed by ten keys, with / without: "
              << medians.of("fila_con") / medians.of("fila_sin") << "\n";
    return 0;
}
