#pragma once

#include "Stage.h"

#include "data/Statement.h"
#include "reports/frmConsejoOrientador.h"
#include "reports/frmConsejoOrientador1.h"
#include "reports/frmInfIndPrim.h"
#include "reports/frmInformeIndividual.h"

#include <chrono>

namespace zv::bench {

/// Person who presses a button as soon as a dialog opens.
class Tutor final : public BusyPerson {
public:
    int button = 1;
    std::chrono::duration<double> pressed{}; ///< How long the button took.
    void runModal(Form& form) override
    {
        const auto begun = std::chrono::steady_clock::now();
        dynamic_cast<CommandButton&>(form.reach(u"cmdNotaManual1", button)).Click.raise();
        pressed = std::chrono::steady_clock::now() - begun;
    }
};

/// A school with sections of 30 and 300 pupils, the smaller with subjects and all their ratings.
inline constexpr StringView rows[] = {
    u"INSERT INTO TipoEnsenanza (IDTipoEnsenanza,Nombre,Orden) VALUES (2,'Primaria',1),(3,'ESO',2)",
    u"INSERT INTO Centro_TipoEnsenanza (CodCentro,codTipoEnsenanza) VALUES (1,2),(1,3)",
    u"INSERT INTO Curso (IDCurso,Descripcion,Orden,codTipoEnsenanza,finciclo) VALUES "
    u"(1,'2º',2,2,-1),(2,'4º',4,3,0)",
    u"INSERT INTO Seccion (IDSeccion,Descripcion,CodCurso) VALUES (30,'30',2),(300,'300',2),(31,'A',1)",
    u"INSERT INTO Alumno (IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) WITH RECURSIVE n(i) AS (SELECT 1 "
    u"UNION ALL SELECT i+1 FROM n WHERE i<330) SELECT i,'Apellido'||i*7919%331,'Segundo','Nombre',CASE WHEN "
    u"i<=30 THEN 30 ELSE 300 END FROM n",
    u"INSERT INTO Alumno (IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) SELECT "
    u"IDAlumno+1000,Apellido_1,Apellido_2,Nombre,31 FROM Alumno WHERE codseccion=30",
    u"INSERT INTO Seccion_Alumno (codAlumno,codSeccion) SELECT IDAlumno,codseccion FROM Alumno",
    u"INSERT INTO Materia (IDMateria,Nombre,codTipoMateria) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
    u"SELECT i+1 FROM n WHERE i<{}) SELECT i,'Materia '||i,4 FROM n",
    u"INSERT INTO MateriaDetalles (IDMateriaDetalles,CodSeccion,codMateria) SELECT IDMateria,31,IDMateria "
    u"FROM Materia",
    u"INSERT INTO Alumno_MateriaDetalles (codAlumno,codMateriaDetalles) SELECT IDAlumno,IDMateria FROM "
    u"Alumno,Materia WHERE codseccion=31",
    u"INSERT INTO ConsejoOrientador (IDConsejoOrientador,Descripcion) WITH RECURSIVE n(i) AS (SELECT 1 UNION "
    u"ALL SELECT i+1 FROM n WHERE i<8) SELECT i,'Pregunta '||i FROM n",
    u"INSERT INTO ConsejoOrientador_Respuesta SELECT "
    u"q.IDConsejoOrientador*4+a.IDConsejoOrientador,q.IDConsejoOrientador,'Respuesta "
    u"'||a.IDConsejoOrientador FROM ConsejoOrientador q, ConsejoOrientador a WHERE a.IDConsejoOrientador<=4",
    u"INSERT INTO ConsejoOrientador_Nota SELECT ROW_NUMBER() OVER "
    u"(),IDAlumno,codseccion,IDConsejoOrientador*4+1+IDAlumno%4,IDConsejoOrientador FROM "
    u"Alumno,ConsejoOrientador WHERE codseccion<>31",
    u"INSERT INTO TipoRespInfInd SELECT IDConsejoOrientador,(IDConsejoOrientador-1)%5+1,'Respuesta "
    u"'||IDConsejoOrientador FROM ConsejoOrientador",
    u"INSERT INTO Alumno_InfInd SELECT IDAlumno,'d','v','a' FROM Alumno WHERE codseccion=31",
    u"INSERT INTO Alumno_InfIndPrim SELECT "
    u"codAlumno,codMateriaDetalles,IDConsejoOrientador,IDConsejoOrientador FROM "
    u"Alumno_MateriaDetalles,ConsejoOrientador WHERE IDConsejoOrientador<=5",
};

template <class Place>
struct ClassroomAt {
    Tutor tutor;
    Place stage;

    /// `where` and `more` say where the school is, and how it is made.
    template <class Where, class... More>
    explicit ClassroomAt(Where where, Long subjects, More... more) : stage(where, tutor, more...)
    {
        for (const StringView row : rows)
            stage.centro->executeNative(row.find(u"{}") == StringView::npos ? String(row)
                                                                            : statement(row, {subjects}));
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
        useDesktop(&tutor);
        stage.facade(0);
        tutor.button = button;
        dialog.Show();
    }
};
using Classroom = ClassroomAt<Stage>;

} // namespace zv::bench
