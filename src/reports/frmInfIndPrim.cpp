#include "reports/frmInfIndPrim.h"

#include "dialogs/MaintenanceDialog.h"
#include "reports/ListWidth.h"
#include "session/cConstCol.h"

namespace zv {

namespace {

constexpr Long types = 5;
constexpr Long textsTab = 6;

String keyOf(StringView subject, Long type) { return String(subject) + u" " + decimalText(type); }

} // namespace

frmInfIndPrim::frmInfIndPrim() : ReportDialog(u"frmInfIndPrim", u"Informe Individualizado Primaria")
{
    for (const StringView tab :
         {u"Respecto al Propio Alumno", u"Respecto a los Objetivos", u"Integración de Conceptos",
          u"Utilización de Procedimientos", u"Nuevas Actitudes", u"Otros"})
        TabInfInd.addTab(tab);
    assemble({}, otros, cmdNotaManual1);
    on(msgValores.Click, &frmInfIndPrim::msgValores_Click);
    on(msgValores.LeaveCell, &frmInfIndPrim::msgValores_LeaveCell);
    on(msgValores.Scroll, &frmInfIndPrim::msgValores_Scroll);
    on(cboValor.LostFocus, &frmInfIndPrim::cboValor_LostFocus);
    Layout(*this)
        .row(Label9, cboAlumno, {&cmdAnterior, &cmdSiguiente})
        .tabs(TabInfInd, {Layout(fraInfInd(0)), Layout(fraInfInd(1)), Layout(fraInfInd(2)),
                          Layout(fraInfInd(3)), Layout(fraInfInd(4)), otros.layout})
        .over(msgValores)
        .floating(cboValor)
        .buttons(cmdNotaManual1(0), cmdNotaManual1(1), ButtonKeys::none);
}

void frmInfIndPrim::Form_Load()
{
    cboValor.Visible = false;
    msgValores.Visible = false;
    ReportDialog::Form_Load();
}

StringView frmInfIndPrim::pupils() const
{
    return u"SELECT DISTINCT IDAlumno, Apellido_1, Apellido_2, Nombre, Dificultad, Valoracion, Apreciacion "
           u"FROM Alumno INNER "
           u"JOIN (Seccion_Alumno LEFT JOIN Alumno_InfInd ON "
           u"Seccion_Alumno.codAlumno=Alumno_InfInd.codAlumno) ON "
           u"Seccion_Alumno.codSeccion=Alumno.codSeccion WHERE alumno.codseccion={} and "
           u"alumno.idAlumno=Seccion_Alumno.codalumno ORDER BY Apellido_1, Apellido_2, Nombre";
}

void frmInfIndPrim::readPupil(cInformeInd& report, Recordset&)
{
    const RecordsetPtr subjects = execute(
        statement(u"SELECT Materia.Nombre, Materia.IDMateria FROM Alumno_MateriaDetalles INNER JOIN "
                  u"(MateriaDetalles INNER JOIN Materia "
                  u"ON Materia.IDMateria=MateriaDetalles.codMateria) ON "
                  u"MateriaDetalles.IDMateriaDetalles=Alumno_MateriaDetalles.codMateriaDetalles WHERE "
                  u"Alumno_MateriaDetalles.codAlumno={} AND Materia.codTipoMateria=4",
                  {report.CodAlumno}));
    for (; !subjects->Eof(); subjects->MoveNext())
        for (Long type = 1; type <= types; ++type)
            readRating(report, CLng(subjects->Fields(u"IDMateria")), CStr(subjects->Fields(u"Nombre")), type);
}

/// Inner join: an answer that is no longer in the catalogue reads as none.
void frmInfIndPrim::readRating(cInformeInd& report, Long subject, const String& name, Long type)
{
    const RecordsetPtr answer =
        execute(statement(u"SELECT codResp, Descripcion FROM Alumno_InfIndPrim INNER JOIN TipoRespInfInd ON "
                          u"Alumno_InfIndPrim.codResp=TipoRespInfInd.IDResp WHERE codMateria={} AND "
                          u"codAlumno={} AND Alumno_InfIndPrim.codTipo={}",
                          {subject, report.CodAlumno, type}));
    cInfPrimaria rating;
    rating.Nombre = name;
    rating.codMateria = subject;
    rating.codTipo = type;
    rating.Estado = cConstCol::NUEVO;
    if (!answer->Eof()) {
        rating.codResp = CLng(answer->Fields(u"codResp"));
        rating.Respuesta = CStr(answer->Fields(u"Descripcion"));
        rating.Estado = cConstCol::Modificado;
    }
    report.colMaterias->Add(rating, keyOf(decimalText(subject), type));
}

void frmInfIndPrim::TabInfInd_Click()
{
    showFrame(fraInfInd);
    const Long tab = TabInfInd.SelectedItem().Index();
    if (tab >= textsTab) {
        msgValores.Visible = false;
    } else {
        fillGrid(tab);
        if (cboAlumno.ListIndex() >= 0)
            fillValues(tab);
        msgValores.ZOrder();
    }
    cboValor.Visible = false;
}

void frmInfIndPrim::fillGrid(Long type)
{
    msgValores.Visible = true;
    msgValores.Clear();
    msgValores.RowHeightMin = cboValor.Height; // The floating list fits into a row.
    msgValores.Rows = Long{1};
    msgValores.Cols = Long{3};
    msgValores.setTextMatrix(0, 0, u"Materia");
    msgValores.setTextMatrix(0, 1, u"Observación");
    msgValores.setColWidth(0, 2200);
    msgValores.setColWidth(1, 5000);
    msgValores.setColWidth(2, 0);
    if (cboAlumno.ListIndex() < 0)
        return;
    for (const cInfPrimaria& rating : *shownReport().colMaterias) {
        if (rating.codTipo != type)
            continue;
        msgValores.AddItem(rating.Nombre);
        msgValores.setTextMatrix(msgValores.Rows() - 1, 1, rating.Respuesta);
        msgValores.setTextMatrix(msgValores.Rows() - 1, 2, decimalText(rating.codMateria));
    }
}

void frmInfIndPrim::fillValues(Long type)
{
    const RecordsetPtr answers = execute(statement(
        u"SELECT IDResp, descripcion FROM TipoRespInfInd WHERE codTipo={} ORDER BY Descripcion", {type}));
    cboValor.Clear();
    cboValor.AddItem(u" ");
    cboValor.setItemData(cboValor.NewIndex(), 0);
    for (; !answers->Eof(); answers->MoveNext()) {
        const Long answer = CLng(answers->Fields(u"IDResp"));
        cboValor.AddItem(decimalText(answer) + u" " + answers->Fields(u"Descripcion"));
        cboValor.setItemData(cboValor.NewIndex(), answer);
    }
    AjustarAnchoLista(cboValor);
}

cInfPrimaria& frmInfIndPrim::ratingOf(Long type)
{
    return shownReport().colMaterias->Item(keyOf(msgValores.TextMatrix(bytFila, 2), type));
}

/// Index out of range: a rating whose answer the list does not hold, since it was moved to another type,
/// chooses the entry behind the last one, which fails with 381.
void frmInfIndPrim::msgValores_Click()
{
    if (msgValores.Row() < 1)
        return;
    msgValores.Col = Long{msgValores.ColSel()};
    msgValores.Row = Long{msgValores.RowSel()};
    bytFila = CByte(msgValores.RowSel());
    bytColumna = CByte(msgValores.ColSel());
    bytTipo = CByte(TabInfInd.SelectedItem().Index());
    const Long answer = ratingOf(bytTipo).codResp;
    const Byte beyond = CByte(cboValor.ListCount());
    const Long entry = cboValor.find(answer);
    cboValor.ListIndex = entry >= 0 ? entry : Long{beyond};
    cboValor.Top = msgValores.Top() + msgValores.CellTop();
    cboValor.Width = msgValores.CellWidth() + 10;
    cboValor.Left = msgValores.Left() + msgValores.CellLeft() + 5;
    cboValor.Visible = true;
    cboValor.ZOrder();
    cboValor.SetFocus();
}

/// Writes the rating to the clicked cell, wherever the grid's present one is. A chosen rating shows the
/// answer's number in front; one read from the database does not.
void frmInfIndPrim::cboValor_LostFocus()
{
    cInfPrimaria& rating = ratingOf(bytTipo);
    rating.codResp = cboValor.ItemData(cboValor.ListIndex());
    rating.Respuesta = cboValor.List(cboValor.ListIndex());
    msgValores.setTextMatrix(bytFila, bytColumna, rating.Respuesta);
}

void frmInfIndPrim::writePupil(const cInformeInd& report)
{
    writeCommon(report);
    execute(statement(u"DELETE FROM Alumno_InfIndPrim WHERE Codalumno={}", {report.CodAlumno}));
    for (const cInfPrimaria& rating : *report.colMaterias)
        execute(statement(u"INSERT INTO Alumno_InfIndPrim VALUES ({},{},{},{})",
                          {report.CodAlumno, rating.codMateria, rating.codTipo, rating.codResp}));
}

} // namespace zv
