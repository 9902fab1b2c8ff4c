#include "reports/ReportDialog.h"

#include "dialogs/MaintenanceDialog.h"
#include "reports/ListWidth.h"
#include "reports/frmInformeIndividual.h"
#include "session/cConstCol.h"

namespace zv {

ReportDialog::ReportDialog(StringView name, StringView caption) : Form(name)
{
    Caption = String(caption);
    Label9.Caption = u"Alumno:";
    cmdAnterior.Caption = u"<";
    cmdSiguiente.Caption = u">";
    on(cboAlumno.Click, &ReportDialog::cboAlumno_Click);
    on(cmdAnterior.Click, &ReportDialog::cmdAnterior_Click);
    on(cmdSiguiente.Click, &ReportDialog::cmdSiguiente_Click);
    on(TabInfInd.Click, &ReportDialog::TabInfInd_Click);
}

ReportDialog::CommonTexts::CommonTexts(Frame& tab)
    : Label6(tab, u"Label6"), txtDificultad(tab, u"txtDificultad"), Label7(tab, u"Label7"),
      txtValoracion(tab, u"txtValoracion"), Label8(tab, u"Label8"), txtAplicacion(tab, u"txtAplicacion"),
      layout(tab)
{
    designText(Label6, u"Dificultades de asimilación en las distintas áreas:", txtDificultad);
    designText(Label7, u"Valoración del aprendizaje y promoción:", txtValoracion);
    designText(Label8, u"Aplicación de medidas educativas:", txtAplicacion);
    layout.above(Label6, txtDificultad).above(Label7, txtValoracion).above(Label8, txtAplicacion);
}

void ReportDialog::assemble(std::vector<ReportText> own, CommonTexts& common,
                            ControlArray<CommandButton, 2>& buttons)
{
    texts_ = std::move(own);
    texts_.push_back({&common.txtDificultad, &cInformeInd::Dificultad, u"Dificultad"});
    texts_.push_back({&common.txtValoracion, &cInformeInd::Valoracion, u"Valoracion"});
    texts_.push_back({&common.txtAplicacion, &cInformeInd::Apreciacion, u"Apreciacion"});
    accept_ = &buttons(0);
    buttons(0).Caption = u"Aceptar";
    buttons(1).Caption = u"Cancelar";
    on(buttons, &CommandButton::Click, &ReportDialog::cmdNotaManual1_Click);
}

void ReportDialog::designText(TextBox& box)
{
    box.MaxLength = Long{200};
    box.MultiLine = true;
}

void ReportDialog::designText(Label& label, StringView caption, TextBox& box)
{
    label.Caption = String(caption);
    designText(box);
}

void ReportDialog::Form_Load()
{
    Hourglass wait(*this);
    Icon = LoadPicture(Configuracion().RutaIcono);
    lngAlumnoActual = 0;
    colAlumnos = std::make_unique<Collection<cInformeInd>>();
    const RecordsetPtr rows = execute(statement(pupils(), {single<frmInformeIndividual>().section()}));
    for (; !rows->Eof(); rows->MoveNext()) {
        cInformeInd report;
        report.CodAlumno = CLng(rows->Fields(u"IDAlumno"));
        for (const ReportText& text : texts_)
            report.*text.text = String() + rows->Fields(text.column);
        // Insert or update is decided by this one table; the report's others are assumed to have the same
        // rows.
        const RecordsetPtr common =
            execute(statement(u"SELECT codAlumno FROM Alumno_InfInd WHERE codAlumno={}", {report.CodAlumno}));
        report.Estado = common->Eof() ? cConstCol::NUEVO : cConstCol::Modificado;
        readPupil(report, *rows);
        cboAlumno.AddItem(String() + rows->Fields(u"Apellido_1") + u" " + rows->Fields(u"Apellido_2") +
                          u", " + rows->Fields(u"Nombre"));
        cboAlumno.setItemData(cboAlumno.NewIndex(), report.CodAlumno);
        const String key = decimalText(report.CodAlumno);
        colAlumnos->Add(std::move(report), key);
    }
    if (colAlumnos->Count() == 0)
        accept_->Enabled = false;
    else
        cboAlumno.ListIndex = Long{0};
}

cInformeInd& ReportDialog::shownReport() { return reportOf(cboAlumno.ItemData(cboAlumno.ListIndex())); }

void ReportDialog::cboAlumno_Click()
{
    if (cboAlumno.ListIndex() < 0)
        return;
    if (lngAlumnoActual > 0) {
        cInformeInd& left = reportOf(lngAlumnoActual);
        for (const ReportText& text : texts_)
            left.*text.text = text.box->Text();
    }
    lngAlumnoActual = cboAlumno.ItemData(cboAlumno.ListIndex());
    const cInformeInd& report = reportOf(lngAlumnoActual);
    for (const ReportText& text : texts_)
        text.box->Text = report.*text.text;
    TabInfInd.Tabs(1).select();
}

void ReportDialog::cmdAnterior_Click() { stepChoice(cboAlumno, -1); }

void ReportDialog::cmdSiguiente_Click() { stepChoice(cboAlumno, 1); }

void ReportDialog::cmdNotaManual1_Click(int Index)
{
    {
        Hourglass wait(*this);
        if (Index == 0) {
            cboAlumno_Click();
            for (const cInformeInd& report : *colAlumnos)
                writePupil(report);
        }
        colAlumnos.reset();
    }
    Unload();
}

void ReportDialog::writeCommon(const cInformeInd& report) const
{
    const String difficulty = doubled(report.Dificultad);
    const String assessment = doubled(report.Valoracion);
    const String measures = doubled(report.Apreciacion);
    if (report.Estado != cConstCol::NUEVO)
        execute(statement(
            u"UPDATE Alumno_InfInd SET Dificultad='{}',Apreciacion='{}',Valoracion='{}' WHERE Codalumno={}",
            {difficulty, measures, assessment, report.CodAlumno}));
    else
        execute(statement(u"INSERT INTO Alumno_InfInd VALUES ({},'{}','{}','{}')",
                          {report.CodAlumno, difficulty, assessment, measures}));
}

} // namespace zv
