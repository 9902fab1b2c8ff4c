#include "reports/frmInformeIndividual.h"

#include "reports/frmInfIndESO.h"
#include "reports/frmInfIndPrim.h"
#include "session/cConfiguracion.h"

namespace zv {

namespace {

constexpr Long primary = 2;

/// Literal of logical true in the database's spelling.
StringView verdad() { return Configuracion().blnSQLServer ? u"1" : u"-1"; }

} // namespace

frmInformeIndividual::frmInformeIndividual()
    : SelectionDialog(u"frmInformeIndividual", u"Informe Individualizado")
{}

StringView frmInformeIndividual::kindsOfAll() const
{
    return u"SELECT * FROM TipoEnsenanza WHERE IDTipoEnsenanza IN (SELECT codTipoEnsenanza "
           u"FROM Centro_TipoEnsenanza) AND IDTipoEnsenanza IN (2,3,4) ORDER BY Orden";
}

StringView frmInformeIndividual::kindsOfUser() const
{
    return u"SELECT * FROM TipoEnsenanza WHERE IDTipoEnsenanza IN (2,3,4) AND IDTipoEnsenanza "
           u"IN (SELECT codTipoEnsenanza FROM Centro_TipoEnsenanza) AND IDTipoEnsenanza "
           u"IN (SELECT CodTipoEnsenanza FROM SistemaCalificacion WHERE IDSistemaCalificacion "
           u"IN (SELECT CodSistemaCalificacion FROM Modelo WHERE IDModelo IN (SELECT CodModelo "
           u"FROM Seccion WHERE CodTutor= {p} OR IDSeccion IN (SELECT CodSeccion FROM MateriaDetalles "
           u"WHERE CodPersonal={p} OR CodPersonalAsociado={p})))) ORDER BY Orden";
}

/// Filter: of primary education only the courses that end a cycle.
String frmInformeIndividual::coursesOfAll(Long kind) const
{
    if (kind > primary)
        return u"SELECT Descripcion, IDCurso FROM Curso WHERE codTipoEnsenanza={t} ORDER BY Orden";
    return Replace(
        u"SELECT Descripcion, IDCurso FROM Curso WHERE finciclo={v} and codTipoEnsenanza={t} ORDER BY Orden",
        u"{v}", verdad());
}

String frmInformeIndividual::coursesOfUser(Long kind) const
{
    if (kind > primary)
        return u"SELECT Descripcion, IDCurso FROM Curso WHERE codTipoEnsenanza={t} AND IDCurso "
               u"IN (SELECT CodCurso FROM Seccion WHERE CodTutor= {p} OR IDSeccion IN (SELECT CodSeccion "
               u"FROM MateriaDetalles WHERE CodPersonal={p} OR CodPersonalAsociado={p})) ORDER BY Orden";
    return Replace(
        u"SELECT Descripcion, IDCurso FROM Curso WHERE codTipoEnsenanza={t} AND IDCurso "
        u"IN (SELECT CodCurso FROM Seccion WHERE curso.finciclo={v} and CodTutor= {p} OR IDSeccion "
        u"IN (SELECT CodSeccion FROM MateriaDetalles WHERE CodPersonal={p} OR CodPersonalAsociado={p})) "
        u"ORDER BY Orden",
        u"{v}", verdad());
}

void frmInformeIndividual::showStepTwo()
{
    if (cboTipoEnsenanza.ItemData(cboTipoEnsenanza.ListIndex()) == primary)
        single<frmInfIndPrim>().Show();
    else
        single<frmInfIndESO>().Show();
}

} // namespace zv
