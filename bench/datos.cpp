// What it costs to say what the dialogs will do to the data: all rules over a school of 600 pupils whose
// reports and guidance are all written, and the rules of one section, as the host asks them before it opens
// one. The peer is the bare engine with the same statements, every row stepped over and every column taken as
// text, in the same run.

#include "Stage.h"

#include "care/rules/Rules.h"
#include "data/sample/SampleSchool.h"

#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

/// A report for each pupil whose kind of teaching has it: 35 ratings, or three texts and twelve; eight notes.
constexpr StringView reports[] = {
    u"DELETE FROM Alumno_InfIndPrim",
    u"DELETE FROM Alumno_InfInd",
    u"DELETE FROM Alumno_InfIndESO",
    u"DELETE FROM ConsejoOrientador_Nota",
    u"INSERT INTO Alumno_InfInd SELECT IDAlumno,'Lee con soltura y comprende lo que "
    u"lee.','Promociona.','Ninguna.' FROM Alumno",
    u"INSERT INTO Alumno_InfIndESO SELECT IDAlumno,'a','b','c','d','e','f','g','h','i','j','k','l' FROM "
    u"Alumno WHERE codseccion>12",
    u"INSERT INTO Alumno_InfIndPrim SELECT d.codAlumno,m.codMateria,t.IDTipo,3*(t.IDTipo-1)+1 FROM "
    u"Alumno_MateriaDetalles d JOIN MateriaDetalles m ON m.IDMateriaDetalles=d.codMateriaDetalles JOIN "
    u"TipoInfInd t WHERE m.CodSeccion<=12",
    u"INSERT INTO ConsejoOrientador_Nota SELECT ROW_NUMBER() OVER (),a.IDAlumno,a.codseccion,(SELECT "
    u"MIN(IDCOResp) FROM ConsejoOrientador_Respuesta WHERE "
    u"CodConsejoOrientador=q.IDConsejoOrientador),q.IDConsejoOrientador FROM Alumno a JOIN ConsejoOrientador "
    u"q WHERE a.codseccion IN (15,16,19,20) AND COALESCE(a.fechabaja,'')=''",
};

/// RAII guard of a school in a folder of its own, and a bare handle on each of its two databases.
struct Office {
    std::filesystem::path folder = std::filesystem::temp_directory_path() / "zv_bench_datos";
    School school;
    std::shared_ptr<RecordingConnection> centro, borrado;
    sqlite3* bareCentro = nullptr;
    sqlite3* bareBorrado = nullptr;

    Office()
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        registerEngine(sqliteEngine());
        school = createSchool(u"sqlite:" + (folder / "c.db").u16string(), [](School& made) {
            fillSampleSchool(made);
            fillSampleIllnesses(made, [](StringView text) { return String(text); });
            for (const StringView each : reports)
                made.centro->executeNative(each);
        });
        centro = std::make_shared<RecordingConnection>(school.centro);
        borrado = std::make_shared<RecordingConnection>(school.borrado);
        school.centro = centro;
        school.borrado = borrado;
        sqlite3_open((folder / "c.db").c_str(), &bareCentro);
        sqlite3_open((folder / "c.borrado.db").c_str(), &bareBorrado);
    }
    Office(const Office&) = delete;
    Office& operator=(const Office&) = delete;
    ~Office()
    {
        sqlite3_close(bareCentro);
        sqlite3_close(bareBorrado);
        school = {};
        centro.reset();
        borrado.reset();
        std::filesystem::remove_all(folder);
    }
};

care::Look everything()
{
    return {.decipher = [](StringView text) { return String(text); }};
}

care::Look oneSection() { return {.area = care::Area::reports, .section = 3}; }

void rules(benchmark::State& state, Office& office, const care::Look& look)
{
    for (auto _ : state)
        if (!care::survey(office.school, look).findings.empty())
            state.SkipWithError("the school is not without fault");
}

void bare(benchmark::State& state, Office& office, const care::Look& look)
{
    for (RecordingConnection* each : {office.centro.get(), office.borrado.get()}) {
        each->statements.clear();
        each->recording = true;
    }
    care::survey(office.school, look);
    for (RecordingConnection* each : {office.centro.get(), office.borrado.get()})
        each->recording = false;
    state.counters["statements"] =
        static_cast<double>(office.centro->statements.size() + office.borrado->statements.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(stepped(office.bareCentro, office.centro->statements));
        benchmark::DoNotOptimize(stepped(office.bareBorrado, office.borrado->statements));
    }
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    Office office;
    steady(benchmark::RegisterBenchmark("reglas", rules, std::ref(office), everything()));
    steady(benchmark::RegisterBenchmark("desnuda", bare, std::ref(office), everything()));
    steady(benchmark::RegisterBenchmark("seccion", rules, std::ref(office), oneSection()));
    steady(benchmark::RegisterBenchmark("seccion_desnuda", bare, std::ref(office), oneSection()));
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::cout << "milliseconds of processor for all rules over 600 pupils: " << medians.of("reglas") / 1e3
              << " (at most 200)\n"
              << "all rules / the same rows on the bare engine: "
              << medians.of("reglas") / medians.of("desnuda")
              << "\nmilliseconds for a section before it opens: " << medians.of("seccion") / 1e3
              << ", / bare engine: " << medians.of("seccion") / medians.of("seccion_desnuda") << '\n';
    return 0;
}
