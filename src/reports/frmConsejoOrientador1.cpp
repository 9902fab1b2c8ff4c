#include "reports/frmConsejoOrientador1.h"

#include "reports/frmConsejoOrientador.h"
#include "runtime/Single.h"

namespace zv {

frmConsejoOrientador1::frmConsejoOrientador1()
    : SelectionDialog(u"frmConsejoOrientador1", u"Introducción de Datos al Consejo Orientador. Paso 1 de 2")
{}

StringView frmConsejoOrientador1::kindsOfAll() const
{
    return u"SELECT * FROM TipoEnsenanza WHERE IDTipoEnsenanza IN (SELECT codTipoEnsenanza "
           u"FROM Centro_TipoEnsenanza) AND IDTipoEnsenanza=3 ORDER BY Orden";
}

StringView frmConsejoOrientador1::kindsOfUser() const
{
    return u"SELECT * FROM TipoEnsenanza WHERE IDTipoEnsenanza=3 AND IDTipoEnsenanza "
           u"IN (SELECT codTipoEnsenanza FROM Centro_TipoEnsenanza) AND IDTipoEnsenanza "
           u"IN (SELECT CodTipoEnsenanza FROM SistemaCalificacion WHERE IDSistemaCalificacion "
           u"IN (SELECT CodSistemaCalificacion FROM Modelo WHERE IDModelo IN (SELECT CodModelo "
           u"FROM Seccion WHERE CodTutor= {p} OR IDSeccion IN (SELECT CodSeccion FROM MateriaDetalles "
           u"WHERE CodPersonal={p} OR CodPersonalAsociado={p})))) ORDER BY Orden";
}

String frmConsejoOrientador1::coursesOfAll(Long /*kind*/) const
{
    return u"SELECT Descripcion, IDCurso FROM Curso WHERE orden IN (2,4) and codTipoEnsenanza={t} ORDER BY "
           u"Orden";
}

/// Operator precedence: AND binds before OR, so that the limit to years 2 and 4 holds for the tutor only,
/// and whoever merely teaches in a section sees courses of any other year.
String frmConsejoOrientador1::coursesOfUser(Long /*kind*/) const
{
    return u"SELECT Descripcion, IDCurso FROM Curso WHERE codTipoEnsenanza={t} AND IDCurso "
           u"IN (SELECT CodCurso FROM Seccion WHERE curso.orden IN (2,4) and CodTutor= {p} OR IDSeccion "
           u"IN (SELECT CodSeccion FROM MateriaDetalles WHERE CodPersonal={p} "
           u"OR CodPersonalAsociado={p})) ORDER BY Orden";
}

void frmConsejoOrientador1::showStepTwo() { single<frmConsejoOrientador>().Show(); }

} // namespace zv
