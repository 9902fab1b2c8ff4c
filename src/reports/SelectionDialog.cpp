#include "reports/SelectionDialog.h"

#include "data/Statement.h"
#include "dialogs/MaintenanceDialog.h"
#include "forms/Desktop.h"
#include "forms/Layout.h"

namespace zv {

SelectionDialog::SelectionDialog(StringView name, StringView caption) : Form(name)
{
    Caption = String(caption);
    fraNotaManual1(0).Border = false;
    lblNotamanual1(0).Caption = u"(*) Tipo de enseñanza:";
    lblNotamanual1(1).Caption = u"(*) Curso:";
    lblNotamanual1(2).Caption = u"(*) Sección:";
    cboCursos.Enabled = false;
    cboSecciones.Enabled = false;
    cmdNotaManual1(0).Caption = u"Siguiente >";
    cmdNotaManual1(1).Caption = u"Salir";
    on(cboTipoEnsenanza.Click, &SelectionDialog::cboTipoEnsenanza_Click);
    on(cboCursos.Click, &SelectionDialog::cboCursos_Click);
    on(cboSecciones.Click, &SelectionDialog::cboSecciones_Click);
    on(cmdNotaManual1, &CommandButton::Click, &SelectionDialog::cmdNotaManual1_Click);
    Layout(*this)
        .frame(fraNotaManual1(0), Layout(fraNotaManual1(0))
                                      .row(lblNotamanual1(0), cboTipoEnsenanza)
                                      .row(lblNotamanual1(1), cboCursos)
                                      .row(lblNotamanual1(2), cboSecciones))
        .buttons(cmdNotaManual1(0), cmdNotaManual1(1));
}

String SelectionDialog::forUser(StringView pattern) const
{
    return Replace(pattern, u"{p}", decimalText(intIDPersonal));
}

Long SelectionDialog::section()
{
    Load();
    return cboSecciones.ItemData(cboSecciones.ListIndex());
}

void SelectionDialog::Form_Load()
{
    Hourglass wait(*this);
    cmdNotaManual1(0).Enabled = false;
    Icon = LoadPicture(Configuracion().RutaIcono);
    const bool seesAll = Configuracion().intIDPerfil == 0;
    if (!seesAll) {
        const RecordsetPtr staff = execute(statement(u"SELECT IDPersonal FROM Personal WHERE CodUsuario={}",
                                                     {Configuracion().intIDUsuario}));
        intIDPersonal = staff->Eof() ? Integer{0} : CInt(staff->Fields(u"IDPersonal"));
    }
    const RecordsetPtr kinds = execute(seesAll ? String(kindsOfAll()) : forUser(kindsOfUser()));
    CargarCombo(u"IDTipoEnsenanza", cboTipoEnsenanza, *kinds);
    if (cboTipoEnsenanza.ListCount() > 0)
        cboTipoEnsenanza.ListIndex = Long{0};
}

/// Cascading lists, but the sections are not cleared: they keep what they showed until a course is chosen,
/// and only the way on is closed.
void SelectionDialog::cboTipoEnsenanza_Click()
{
    if (cboTipoEnsenanza.ListIndex() < 0) {
        cboCursos.Clear();
        cboCursos.Enabled = false;
        return;
    }
    cmdNotaManual1(0).Enabled = false;
    cboCursos.Enabled = true;
    const Long kind = cboTipoEnsenanza.ItemData(cboTipoEnsenanza.ListIndex());
    const bool seesAll = Configuracion().intIDPerfil == 0;
    if (!seesAll && intIDPersonal <= 0)
        return;
    const String pattern = seesAll ? coursesOfAll(kind) : coursesOfUser(kind);
    const RecordsetPtr courses = execute(Replace(forUser(pattern), u"{t}", decimalText(kind)));
    CargarCombo(u"IDCurso", cboCursos, *courses);
}

void SelectionDialog::cboCursos_Click()
{
    if (cboCursos.ListIndex() < 0) {
        cboSecciones.Clear();
        cboSecciones.Enabled = false;
        return;
    }
    cmdNotaManual1(0).Enabled = false;
    cboSecciones.Enabled = true;
    const String course = decimalText(cboCursos.ItemData(cboCursos.ListIndex()));
    const StringView pattern =
        Configuracion().intIDPerfil == 0
            ? u"SELECT Descripcion, IDSeccion FROM Seccion WHERE codCurso={c} ORDER BY Descripcion"
            : u"SELECT Descripcion, IDSeccion FROM Seccion WHERE codCurso={c} AND (CodTutor= {p} "
              u"OR IDSeccion IN (SELECT CodSeccion FROM MateriaDetalles WHERE CodPersonal={p} "
              u"OR CodPersonalAsociado={p})) ORDER BY Descripcion";
    const RecordsetPtr sections = execute(Replace(forUser(pattern), u"{c}", course));
    CargarCombo(u"IDSeccion", cboSecciones, *sections);
    cboSecciones.Enabled = cboSecciones.ListCount() != 0;
}

void SelectionDialog::CargarCombo(StringView strCampo, ComboBox& objCombo, Recordset& rs)
{
    objCombo.Clear();
    if (rs.Eof()) {
        objCombo.Enabled = false;
        return;
    }
    objCombo.Enabled = true;
    const StringView text = sameName(strCampo, u"IDTipoEnsenanza") ? u"Nombre" : u"Descripcion";
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        objCombo.AddItem(String() + rs.Fields(text));
        objCombo.setItemData(objCombo.NewIndex(), CLng(rs.Fields(strCampo)));
    }
}

void SelectionDialog::cmdNotaManual1_Click(int Index)
{
    Enabled = false;
    if (Index != 0) {
        Unload();
        return;
    }
    if (cboSecciones.ListIndex() >= 0) {
        Hourglass wait(*this);
        showStepTwo();
    }
    Enabled = true;
}

void SelectionDialog::Form_Unload()
{
    Hide();
    DoEvents();
}

} // namespace zv
