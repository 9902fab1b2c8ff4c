// What it costs to say what is missing: all reports of 2,000 pupils, all of them written, with every text
// searched for classmates' names. The peer is the bare engine with the same statements, every row stepped
// over and every column taken as text, in the same run.

#include "Stage.h"

#include "progress/Panel.h"

#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

/// 80 sections of 25: of ten, four of primary education with eight subjects, and six of the secondary stage,
/// two of them with guidance. A text has some eighty letters.
constexpr StringView rows[] = {
    u"INSERT INTO Curso (IDCurso,Descripcion,Orden,codTipoEnsenanza,finciclo) VALUES "
    u"(1,'2º',2,2,-1),(2,'1º',1,3,0),(3,'4º',4,3,0)",
    u"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<79) INSERT INTO Seccion "
    u"(IDSeccion,Descripcion,CodCurso) SELECT i,'S'||i,CASE WHEN i%10<4 THEN 1 WHEN i%10<8 THEN 2 ELSE 3 END "
    u"FROM n",
    u"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<1999) INSERT INTO Alumno "
    u"(IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) SELECT "
    u"10000+i,'Apellido'||(i*7919%2003),'Segundo'||i,substr('LucíaÍñigoPilarMartaSergioAndrés',i%5*5+1,5)||"
    u"char(97+i%26),i%80 FROM n",
    u"INSERT INTO Seccion_Alumno (codAlumno,codSeccion) SELECT IDAlumno,codseccion FROM Alumno",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<8) INSERT INTO Materia "
    u"(IDMateria,Nombre,codTipoMateria) SELECT i,'Materia '||i,4 FROM n",
    u"INSERT INTO MateriaDetalles (IDMateriaDetalles,CodSeccion,codMateria) SELECT "
    u"IDSeccion*10+IDMateria,IDSeccion,IDMateria FROM Seccion,Materia WHERE CodCurso=1",
    u"INSERT INTO Alumno_MateriaDetalles (codAlumno,codMateriaDetalles) SELECT IDAlumno,IDMateriaDetalles "
    u"FROM Alumno JOIN MateriaDetalles ON MateriaDetalles.CodSeccion=Alumno.codseccion",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<8) INSERT INTO ConsejoOrientador "
    u"(IDConsejoOrientador,Descripcion) SELECT i,'Pregunta '||i FROM n",
    u"INSERT INTO ConsejoOrientador_Respuesta SELECT IDConsejoOrientador,IDConsejoOrientador,'Sí' FROM "
    u"ConsejoOrientador",
    u"INSERT INTO ConsejoOrientador_Nota SELECT ROW_NUMBER() OVER "
    u"(),IDAlumno,codseccion,IDConsejoOrientador,IDConsejoOrientador FROM Alumno,ConsejoOrientador WHERE "
    u"codseccion%10>=8",
    u"INSERT INTO TipoRespInfInd SELECT IDConsejoOrientador,(IDConsejoOrientador-1)%5+1,'R' FROM "
    u"ConsejoOrientador",
    u"INSERT INTO Alumno_InfIndPrim SELECT codAlumno,codMateriaDetalles%10,IDResp,IDResp FROM "
    u"Alumno_MateriaDetalles,TipoRespInfInd WHERE IDResp<=5",
    u"INSERT INTO Alumno_InfInd SELECT IDAlumno,{},{},{} FROM Alumno",
    u"INSERT INTO Alumno_InfIndESO SELECT IDAlumno,{},{},{},{},{},{},{},{},{},{},{},{} FROM Alumno WHERE "
    u"codseccion%10>=4",
};
constexpr StringView text =
    u"'Lee con soltura, comprende lo que lee y participa en clase; debe cuidar los cuadernos.'";

struct Nobody final : BusyPerson {
    void runModal(Form& /*form*/) override {}
};

void panel(benchmark::State& state, Stage& stage)
{
    for (auto _ : state) {
        const auto reports = progress::panel(*stage.centro).reports;
        if (reports.size() != 2400 || !std::ranges::all_of(reports, &progress::Report::isWhole))
            state.SkipWithError("the reports are not whole");
    }
}

void bare(benchmark::State& state, Stage& stage)
{
    const std::vector<String>& statements = stage.recorded([&] { progress::panel(*stage.centro); });
    state.counters["statements"] = static_cast<double>(statements.size());
    sqlite3* base = nullptr;
    sqlite3_open(stage.file.c_str(), &base);
    for (auto _ : state)
        benchmark::DoNotOptimize(stepped(base, statements));
    sqlite3_close(base);
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    Nobody person;
    Stage stage("zv_bench_progreso", person);
    for (const StringView each : rows)
        stage.centro->executeNative(Replace(each, u"{}", text));
    steady(benchmark::RegisterBenchmark("panel", panel, std::ref(stage)));
    steady(benchmark::RegisterBenchmark("desnuda", bare, std::ref(stage)));
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::cout << "milliseconds of processor for 2,400 reports of 2,000 pupils: " << medians.of("panel") / 1e3
              << " (at most 100)\npanel / the same rows on the bare engine: "
              << medians.of("panel") / medians.of("desnuda") << '\n';
    return 0;
}
