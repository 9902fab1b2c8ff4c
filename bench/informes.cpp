// Guidance and primary report, a whole section at a time and without a screen, against the bare SQLite
// interface running the very same statements (recorded from the dialogs). Both in one run, with synchronous
// OFF so that the disk does not hide what we add. Prints the ratios at the end.

#include "Stage.h"

#include "data/Dialect.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmConsejoOrientador1.h"
#include "reports/frmInfIndPrim.h"
#include "reports/frmInformeIndividual.h"

#include <iostream>

namespace {

using namespace zv;
using namespace zv::bench;

/// Person who presses a button as soon as a dialog opens.
class Tutor final : public BusyPerson {
public:
    int button = 1;
    void runModal(Form& form) override
    {
        dynamic_cast<CommandButton&>(form.reach(u"cmdNotaManual1", button)).Click.raise();
    }
};

/// A school with sections of 30 and 300 pupils, the smaller with twelve subjects and all their ratings.
constexpr StringView rows[] = {
    u"INSERT INTO TipoEnsenanza (IDTipoEnsenanza,Nombre,Orden) VALUES (2,'Primaria',1),(3,'ESO',2)",
    u"INSERT INTO Centro_TipoEnsenanza (CodCentro,codTipoEnsenanza) VALUES (1,2),(1,3)",
    u"INSERT INTO Curso (IDCurso,Descripcion,Orden,codTipoEnsenanza,finciclo) VALUES (1,'2º',2,2,-1),"
    u"(2,'4º',4,3,0)",
    u"INSERT INTO Seccion (IDSeccion,Descripcion,CodCurso) VALUES (30,'30',2),(300,'300',2),(31,'A',1)",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<330) INSERT INTO Alumno "
    u"(IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) SELECT i,'Apellido'||i*7919%331,'Segundo','Nombre',"
    u"CASE WHEN i<=30 THEN 30 ELSE 300 END FROM n",
    u"INSERT INTO Alumno (IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) SELECT IDAlumno+1000,Apellido_1,"
    u"Apellido_2,Nombre,31 FROM Alumno WHERE codseccion=30",
    u"INSERT INTO Seccion_Alumno (codAlumno,codSeccion) SELECT IDAlumno,codseccion FROM Alumno",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<12) INSERT INTO Materia "
    u"(IDMateria,Nombre,codTipoMateria) SELECT i,'Materia '||i,4 FROM n",
    u"INSERT INTO MateriaDetalles (IDMateriaDetalles,CodSeccion,codMateria) SELECT IDMateria,31,IDMateria "
    u"FROM "
    u"Materia",
    u"INSERT INTO Alumno_MateriaDetalles (codAlumno,codMateriaDetalles) SELECT IDAlumno,IDMateria FROM "
    u"Alumno,Materia WHERE codseccion=31",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<8) INSERT INTO ConsejoOrientador "
    u"(IDConsejoOrientador,Descripcion) SELECT i,'Pregunta '||i FROM n",
    u"INSERT INTO ConsejoOrientador_Respuesta SELECT q.IDConsejoOrientador*4+a.IDConsejoOrientador,"
    u"q.IDConsejoOrientador,'Respuesta '||a.IDConsejoOrientador FROM ConsejoOrientador q, ConsejoOrientador "
    u"a "
    u"WHERE a.IDConsejoOrientador<=4",
    u"INSERT INTO ConsejoOrientador_Nota SELECT ROW_NUMBER() OVER (),IDAlumno,codseccion,"
    u"IDConsejoOrientador*4+1+IDAlumno%4,IDConsejoOrientador FROM Alumno,ConsejoOrientador WHERE "
    u"codseccion<>31",
    u"INSERT INTO TipoRespInfInd SELECT IDConsejoOrientador,(IDConsejoOrientador-1)%5+1,'Respuesta '||"
    u"IDConsejoOrientador FROM ConsejoOrientador",
    u"INSERT INTO Alumno_InfInd SELECT IDAlumno,'d','v','a' FROM Alumno WHERE codseccion=31",
    u"INSERT INTO Alumno_InfIndPrim SELECT "
    u"codAlumno,codMateriaDetalles,IDConsejoOrientador,IDConsejoOrientador "
    u"FROM Alumno_MateriaDetalles,ConsejoOrientador WHERE IDConsejoOrientador<=5",
};

struct Classroom {
    Tutor tutor;
    Stage stage{"zv_bench_informes", tutor};

    Classroom()
    {
        for (const StringView row : rows)
            stage.centro->executeNative(row);
        stage.facade(0);
        for (SelectionDialog* dialog : {static_cast<SelectionDialog*>(&single<frmConsejoOrientador1>()),
                                        static_cast<SelectionDialog*>(&single<frmInformeIndividual>())}) {
            dialog->Load();
            dialog->cboCursos.ListIndex = Long{0};
            dialog->cboSecciones.ListIndex = Long{0};
        }
    }
    /// Shows a dialog and leaves it by one of its buttons.
    void play(Form& dialog, int button)
    {
        tutor.button = button;
        dialog.Show();
    }
};

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
    Classroom set;
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
