#include "catalogues/frmTipoTarea.h"

namespace zv {

namespace {

constexpr Integer neededDataDeleted = 520;

constexpr StringView guards[] = {u"SELECT codTipoTarea FROM Tarea WHERE codTipoTarea={fila}"};

} // namespace

const TextCatalogue& frmTipoTarea::words()
{
    static const Step load[] = {step::mode,
                                step::icon,
                                step::object,
                                step::lock,
                                step::title,
                                step::texts,
                                own(&frmTipoTarea::listOccupations),
                                step::existing,
                                step::read,
                                step::fill,
                                step::hold,
                                step::close};
    static const Step accept[] = {step::mode, step::object, step::givenEvery, step::hourglass,
                                  step::safe, step::write,  step::press};
    static const TextCatalogue words{
        .captions = {.nuevo = 21001, .modificado = 21002},
        .table = u"TipoTarea",
        .key = u"idTipoTarea",
        .query = u"SELECT * FROM TipoTarea WHERE IDTipoTarea={fila}",
        .insert = u"INSERT INTO TipoTarea (IDTipoTarea,Nombre,codTipoMiembroCentro) VALUES ({},'{}',{})",
        .update = u"UPDATE TipoTarea SET Nombre='{}',codTipoMiembroCentro={} WHERE IDTipoTarea={}",
        .guards = guards,
        .load = load,
        .accept = accept,
        .guard = recipe::guardAndClose,
        .unload = recipe::unloadClosed,
    };
    return words;
}

frmTipoTarea::frmTipoTarea() : TextCatalogueDialog(u"frmTipoTarea", words())
{
    designLabel(lblMiembro, u"Tipo miembro del centro:", 21021);
    assemble({{txtNombre, lblTarea, u"Tarea:", 21020, u"Nombre"}}, cmdAceptar, cmdCancelar,
             [this](Layout& layout) { layout.row(lblMiembro, cboMiembroCentro); });
}

/// Fills the list of occupations, before `existing`: for a new row too.
Then frmTipoTarea::listOccupations(Routine& routine)
{
    if (!readRow(routine.next(), u"SELECT * FROM TipoMiembroCentro  ORDER BY Nombre"))
        return Then::leave;
    routine([&] { addRows(cboMiembroCentro, u"Nombre", u"IDTMC"); });
    return Then::goOn;
}

/// Dangling reference: a row whose occupation was deleted is shown without one, and cannot be accepted until
/// another is chosen.
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
