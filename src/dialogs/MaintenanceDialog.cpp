#include "dialogs/MaintenanceDialog.h"

#include "forms/Desktop.h"
#include "forms/Keys.h"
#include "services/modCentroConfiguracion.h"
#include "session/cConstCol.h"

namespace zv {

MaintenanceDialog::MaintenanceDialog(StringView name) : Form(name) {}
MaintenanceDialog::~MaintenanceDialog() = default;

bool onlyDigits(Integer& KeyAscii)
{
    const bool discard =
        KeyAscii != keyAscii::backspace && !IsNumeric(String(1, static_cast<char16_t>(KeyAscii)));
    if (discard)
        KeyAscii = 0;
    return discard;
}

bool isBlank(const TextBox& box) { return Trim(box.Text()).empty(); }

bool MaintenanceDialog::changesRow() { return Configuracion().bytAccion == cConstCol::Modificado; }

bool MaintenanceDialog::createsRow() { return Configuracion().bytAccion == cConstCol::NUEVO; }

String MaintenanceDialog::rowText() { return decimalText(Configuracion().lngRowData); }

String MaintenanceDialog::forRow(StringView pattern) { return Replace(pattern, u"{fila}", rowText()); }

void MaintenanceDialog::loadIcon() { Icon = LoadPicture(Configuracion().RutaIcono); }

void MaintenanceDialog::lockDown(ResumeNext& next)
{
    next([&] { BloquearControles(*this, Configuracion().Activa); });
}

void MaintenanceDialog::tagCaption(ResumeNext& next, CaptionIds ids)
{
    next([&] { Tag = decimalText(changesRow() ? ids.modificado : ids.nuevo); });
}

void MaintenanceDialog::localise(ResumeNext& next, const cCentroApi& api)
{
    next([&] { CargarTextos(*this); });
    next([&] { api.Marcar_Obligatorios(Controls); });
}

bool MaintenanceDialog::readRow(ResumeNext& next, StringView query, Integer messageId)
{
    next([&] { fetch(query); });
    return !reportedFailure(messageId);
}

void MaintenanceDialog::registerRow(ResumeNext& next, const cCentroApi& api, CommandButton& accept)
{
    const cConfiguracion& session = Configuracion();
    const bool heldByOther = next.condition([&] {
        return api.registroactivo(session.conLocalCentro, Name(), session.lngRowData, session.intIDUsuario);
    });
    if (!heldByOther)
        return;
    next([&] { accept.Enabled = false; });
    next([&] { MarcaBloqueo = u"B"; });
}

void MaintenanceDialog::fetch(StringView query)
{
    rows_.reset();
    rows_ = execute(query);
}

RecordsetPtr MaintenanceDialog::rows() const
{
    if (!rows_)
        fail(failure::noObject);
    return rows_;
}

void MaintenanceDialog::makeSafe(ResumeNext& next, const cCentroApi& api)
{
    next([&] { api.ComprobarComilla(Controls); });
}

bool MaintenanceDialog::everyFieldGiven()
{
    for (const Control* control : Controls) {
        const auto* box = dynamic_cast<const TextBox*>(control);
        const auto* list = dynamic_cast<const ComboBox*>(control);
        if ((box != nullptr && isBlank(*box)) || (list != nullptr && Trim(list->Text()).empty())) {
            warn(message::fieldsMissing, sign::information);
            return false;
        }
    }
    return true;
}

bool MaintenanceDialog::update(ResumeNext& next, const std::function<String()>& statement)
{
    next([&] { execute(statement()); });
    if (!reportedFailure(message::updateFailed))
        return true;
    MousePointer = pointer::standard;
    return false;
}

Long MaintenanceDialog::drawKey(const cCentroApi& api, const TableKey& key)
{
    const cConfiguracion& session = Configuracion();
    const Value drawn =
        api.IDMax(session.conLocalCentro, session.conLocalBorradoCentro, key.table, key.column);
    return key.width == KeyWidth::bits16 ? CInt(drawn) : CLng(drawn);
}

Long MaintenanceDialog::insert(ResumeNext& next, const cCentroApi& api, const TableKey& key,
                               const std::function<String(Long)>& statementFor)
{
    for (Long id = 0;;) {
        Err().Clear();
        // No key, no insert: a row 0 would be reported as a failure and yet stay in the table.
        const bool drawn = next([&] { id = drawKey(api, key); });
        if (drawn)
            next([&] { execute(statementFor(id)); });
        if (Err().Number == 0)
            return id;
        if (Err().Number == failure::keyExists && drawn)
            continue;
        showMessage(message::insertFailed, sign::critical);
        return id;
    }
}

bool MaintenanceDialog::unreferenced(std::span<const StringView> queries)
{
    ResumeNext next;
    bool free = false;
    for (const StringView& query : queries) {
        next([&] { fetch(forRow(query)); });
        if (reportedFailure(message::readFailed))
            return free;
        const bool first = &query == &queries.front();
        next([&] { free = (first || free) && rows()->Eof(); });
    }
    return free;
}

void MaintenanceDialog::addRows(ComboBox& list, StringView text, StringView data)
{
    for (; !rows()->Eof(); rows()->MoveNext()) {
        list.AddItem(String() + field(text));
        list.setItemData(list.NewIndex(), CLng(field(data)));
    }
}

void MaintenanceDialog::choose(ComboBox& list, const Value& data)
{
    if (data.isNull())
        return;
    const Long entry = list.find(CLng(data));
    if (entry >= 0)
        list.ListIndex = entry;
}

void MaintenanceDialog::releaseRow()
{
    if (changesRow() && MarcaBloqueo() != u"B")
        unregisterRow();
}

void MaintenanceDialog::unregisterRow()
{
    const cConfiguracion& session = Configuracion();
    cCentroApi::create().EliminarRegistroActivo(session.conLocalCentro, Name(), session.lngRowData);
}

void MaintenanceDialog::leaveScreen()
{
    if (Visible)
        Hide();
    DoEvents();
}

void MaintenanceDialog::closeRows()
{
    ResumeNext next;
    next([&] { rows()->Close(); });
    rows_.reset();
    ResumeNext::leave();
}

void MaintenanceDialog::designLabel(Label& label, StringView caption, Integer captionId, bool mandatory)
{
    label.Caption = String(caption);
    if (captionId != 0)
        label.Tag = decimalText(captionId);
    if (mandatory)
        label.Marca = u"*";
}

void MaintenanceDialog::designField(Label& label, StringView caption, Integer captionId, TextBox& box,
                                    Long width, bool mandatory)
{
    designLabel(label, caption, captionId, mandatory);
    box.MaxLength = width;
    selectAllOnFocus(box);
}

void MaintenanceDialog::designButton(CommandButton& button, StringView caption, Integer captionId)
{
    button.Caption = String(caption);
    if (captionId != 0)
        button.Tag = decimalText(captionId);
}

void MaintenanceDialog::designButtons(CommandButton& accept, CommandButton& cancel)
{
    designButton(accept, u"Aceptar", 334);
    designButton(cancel, u"Cancelar", 335);
}

void MaintenanceDialog::selectAllOnFocus(TextBox& box)
{
    box.GotFocus.bind([&box] {
        box.SelStart = Long{0};
        box.SelLength = static_cast<Long>(box.Text().size());
    });
}

} // namespace zv
