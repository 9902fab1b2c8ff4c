#include "reports/ResponseDialog.h"

#include "forms/Desktop.h"
#include "forms/Layout.h"

namespace zv {

ResponseDialog::ResponseDialog(StringView name, const ResponseCatalogue& words)
    : MaintenanceDialog(name), words_(words)
{
    Caption = String(words.caption);
    Label1.Caption = u"Tipo de Pregunta:";
    designLabel(Label2, u"Posible Respuesta:", 0);
    txtRespuesta.MaxLength = Long{200};
    txtRespuesta.MultiLine = true;
    designButtons(cmdProvincia(aceptar), cmdProvincia(cancelar));
    on(cmdProvincia, &CommandButton::Click, &ResponseDialog::cmdProvincia_Click);
    Layout(*this)
        .row(Label1, cboPregunta)
        .row(Label2, txtRespuesta)
        .buttons(cmdProvincia(aceptar), cmdProvincia(cancelar), ButtonKeys::escape);
}

/// Constant caption: it has no number, and the row's text is not appended.
void ResponseDialog::Form_Load()
{
    Hourglass wait(*this);
    ResumeNext next;
    cCentroApi api;
    next([&] { loadIcon(); });
    next([&] { api = cCentroApi::create(); });
    lockDown(next);
    localise(next, api);
    next([&] { fetch(words_.parents); });
    next([&] { addRows(cboPregunta, u"Descripcion", words_.parentKey); });
    next([&] { cboPregunta.ListIndex = Long{0}; });
    if (!changesRow())
        return;
    Err().Clear();
    if (!readRow(next, forRow(words_.load)))
        return;
    next([&] { txtRespuesta.Text = field(u"Descripcion"); });
    next([&] { choose(cboPregunta, CLng(field(words_.parentColumn))); });
    registerRow(next, api, cmdProvincia(aceptar));
}

/// Insert or update by the session's row and not by its action. The update runs outside the error mode: its
/// failure propagates with its own description. The apostrophes are doubled in a copy, not in the box.
void ResponseDialog::cmdProvincia_Click(int Index)
{
    const cCentroApi api = cCentroApi::create();
    if (Index == aceptar) {
        if (txtRespuesta.Text().empty() || cboPregunta.ListIndex() < 0) {
            Beep();
            MsgBox(u"Debe rellenar todos los datos", sign::exclamation, LoadResString(message::title));
            return;
        }
        const Long question = cboPregunta.ItemData(cboPregunta.ListIndex());
        const String text = doubled(txtRespuesta.Text());
        const Long row = Configuracion().lngRowData;
        if (row < 1)
            insertAnswer(api, question, text);
        else
            execute(statement(words_.update, {question, text, row}));
    }
    Unload();
}

void ResponseDialog::insertAnswer(const cCentroApi& api, Long question, const String& text)
{
    ResumeNext next;
    insert(next, api, {words_.table, words_.key}, [&](Long id) {
        return statement(words_.insert, {id, question, text});
    });
    ResumeNext::leave();
}

void ResponseDialog::Form_Unload()
{
    releaseRow();
    leaveScreen();
}

} // namespace zv
