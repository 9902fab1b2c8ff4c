// A section's primary reports on paper: 30 and 300 pupils, one PDF for all and one for each, from the
// database to files that are whole. Prints the time for a pupil, and what memory the process took at most.

#include "Measure.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "data/sqlite/SqliteEngine.h"
#include "qt/paper/Files.h"

#include <QApplication>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <iostream>
#include <numeric>

namespace {

using namespace zv;

/// Twelve areas, five types of rating, four answers of each; three texts of about 120 letters.
constexpr StringView rows[] = {
    u"INSERT INTO TipoEnsenanza (IDTipoEnsenanza,Nombre,Orden) VALUES (2,'Primaria',1)",
    u"INSERT INTO Curso (IDCurso,Descripcion,Orden,codTipoEnsenanza,finciclo) VALUES (1,'2º',2,2,-1)",
    u"INSERT INTO Seccion (IDSeccion,Descripcion,CodCurso) VALUES (30,'A',1),(300,'B',1)",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<330) INSERT INTO Alumno "
    u"(IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) SELECT i,'Apellido'||i,'Segundo','Nombre',CASE WHEN "
    u"i<=30 THEN 30 ELSE 300 END FROM n",
    u"INSERT INTO Seccion_Alumno (codAlumno,codSeccion) SELECT IDAlumno,codseccion FROM Alumno",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<12) INSERT INTO Materia "
    u"(IDMateria,Nombre,codTipoMateria) SELECT i,'Conocimiento del medio '||i,4 FROM n",
    u"INSERT INTO MateriaDetalles (IDMateriaDetalles,CodSeccion,codMateria) SELECT IDMateria,30,IDMateria "
    u"FROM Materia",
    u"INSERT INTO Alumno_MateriaDetalles (codAlumno,codMateriaDetalles) SELECT IDAlumno,IDMateria FROM "
    u"Alumno,Materia",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5) INSERT INTO TipoInfInd "
    u"(IDTipo,Descripcion) SELECT i,'Respecto a los objetivos '||i FROM n",
    u"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<19) INSERT INTO TipoRespInfInd "
    u"SELECT i+1,i/4+1,'Progresa adecuadamente '||i FROM n",
    u"INSERT INTO Alumno_InfInd SELECT IDAlumno,printf('%.120c','x'),'Ha trabajado bien todo el curso y "
    u"ayuda a quien lo necesita. Le conviene leer más en casa y repasar las tablas de "
    u"multiplicar.','Ninguna.' FROM Alumno",
    u"INSERT INTO Alumno_InfIndPrim SELECT IDAlumno,IDMateria,IDTipo,IDTipo*4-(IDAlumno+IDMateria)%4 FROM "
    u"Alumno,Materia,TipoInfInd",
};

School* school = nullptr;

/// Of the process so far, in MiB.
long peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

void reports(benchmark::State& state, paper::Into into)
{
    const auto pupils = static_cast<Long>(state.range(0));
    for (auto _ : state) {
        const QTemporaryDir folder;
        const paper::Reports all(*school->centro, paper::Kind::primary, pupils, {},
                                 std::chrono::year(2026) / 6 / 19);
        std::vector<std::size_t> places(all.section().sheets.size());
        std::iota(places.begin(), places.end(), 0);
        const paper::Made made = paper::makeFiles(all, places, folder.path(), paper::Format::pdf, into,
                                                  [](int, int, const QString&) { return true; });
        if (made.files.size() != (into == paper::Into::one ? 1 : static_cast<qsizetype>(pupils)))
            state.SkipWithError("a file is missing");
    }
    state.counters["MB"] = static_cast<double>(peakMemory());
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    bench::initialize(argc, argv);
    const QApplication application(argc, argv);
    registerEngine(sqliteEngine());
    School made = temporarySchool();
    for (const StringView row : rows)
        made.centro->executeNative(row);
    school = &made;
    for (const int pupils : {30, 300})
        for (const auto& [name, into] :
             {std::pair("papel_uno", paper::Into::one), std::pair("papel_cada", paper::Into::each)})
            benchmark::RegisterBenchmark(name, reports, into)
                ->Arg(pupils)
                ->Iterations(1)
                ->Repetitions(3)
                ->DisplayAggregatesOnly()
                ->Unit(benchmark::kMillisecond);
    bench::Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    for (const char* name : {"papel_uno", "papel_cada"})
        std::cout << name << ": a pupil of 300 / of 30: "
                  << medians.of(std::string(name) + "300") / medians.of(std::string(name) + "30") / 10
                  << '\n';
    std::cout << "memory at most: " << peakMemory() << " MiB\n";
    return 0;
}
