#include "catalogues/frmTipoTarea.h"

namespace zv {

namespace {

constexpr Integer neededDataDeleted = 520;

constexpr StringView guards[] = {u"SELECT codTipoTarea FROM Tarea WHERE codTipoTarea={}"};
constexpr TextCatalogue words{
    .captions = {.nuevo = 21001, .modificado = 21002},
    .table = u"TipoTarea",
    .key = u"idTipoTarea",
    .load = u"SELECT * FROM TipoTarea WHERE IDTipoTarea={}",
    .insert = u"INSERT INTO TipoTarea (IDTipoTarea,Nombre,codTipoMiembroCentro) VALUES ({},'{}',{})",
    .update = u"UPDATE TipoTarea SET Nombre='{}',codTipoMiembroCentro={} WHERE IDTipoTarea={}",
    .guards = guards,
    .test = EmptyTest::everyBox,
    .clearsErr = false,
    .keepsRows = false,
};

} // namespace

frmTipoTarea::frmTipoTarea() : TextCatalogueDialog(u"frmTipoTarea", words)
{
    designLabel(lblMiembro, u"Tipo miembro del centro:", 21021);
    assemble({{txtNombre, lblTarea, u"Tarea:", 21020, u"Nombre"}}, cmdAceptar, cmdCancelar,
             [this](Layout& layout) { layout.row(lblMiembro, cboMiembroCentro); });
}

/// The occupations, for a new row too.
bool frmTipoTarea::beforeRow(ResumeNext& next)
{
    if (!readRow(next, u"SELECT * FROM TipoMiembroCentro  ORDER BY Nombre"))
        return false;
    next([&] { addRows(cboMiembroCentro, u"Nombre", u"IDTMC"); });
    if (!changesRow())
        closeRows();
    return true;
}

/// A row whose occupation was deleted is shown without one, and cannot be accepted until another is chosen.
void frmTipoTarea::fill(ResumeNext& next)
{
    next([&] { choose(cboMiembroCentro, field(u"codTipoMiembroCentro")); });
    if (cboMiembroCentro.ListIndex() == -1)
        warn(neededDataDeleted, sign::critical);
    TextCatalogueDialog::fill(next);
}

std::vector<Value> frmTipoTarea::values()
{
    return {txtNombre.Text(), cboMiembroCentro.ItemData(cboMiembroCentro.ListIndex())};
}

} // namespace zv
