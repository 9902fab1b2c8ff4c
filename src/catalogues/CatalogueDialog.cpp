#include "catalogues/CatalogueDialog.h"

#include "forms/Desktop.h"
#include "services/modCentroConfiguracion.h"
#include "session/cConstCol.h"

namespace zv {

CatalogueDialog::CatalogueDialog(StringView name) : Form(name) {}
CatalogueDialog::~CatalogueDialog() = default;

RecordsetPtr execute(StringView statement)
{
    const ConnectionPtr& connection = Configuracion().conLocalCentro;
    if (!connection)
        fail(failure::noObject);
    return connection->Execute(statement);
}

bool reportedFailure(Integer messageId, Integer flags)
{
    if (Err().Number == 0)
        return false;
    warn(messageId, flags);
    Err().Clear();
    return true;
}

bool onlyDigits(Integer& KeyAscii)
{
    constexpr Integer backspace = 8;
    const bool discard = KeyAscii != backspace && !IsNumeric(String(1, static_cast<char16_t>(KeyAscii)));
    if (discard)
        KeyAscii = 0;
    return discard;
}

bool isBlank(const TextBox& box) { return Trim(box.Text()).empty(); }

bool CatalogueDialog::changesRow() { return Configuracion().bytAccion == cConstCol::Modificado; }

bool CatalogueDialog::createsRow() { return Configuracion().bytAccion == cConstCol::NUEVO; }

String CatalogueDialog::rowText() { return decimalText(Configuracion().lngRowData); }

String CatalogueDialog::forRow(StringView pattern) { return Replace(pattern, u"{}", rowText()); }

void CatalogueDialog::loadIcon() { Icon = LoadPicture(Configuracion().RutaIcono); }

void CatalogueDialog::lockDown(ResumeNext& next)
{
    next([&] { BloquearControles(*this, Configuracion().Activa); });
}

void CatalogueDialog::tagCaption(ResumeNext& next, CaptionIds ids)
{
    next([&] { Tag = decimalText(changesRow() ? ids.modificado : ids.nuevo); });
}

void CatalogueDialog::localise(ResumeNext& next, const cCentroApi& api)
{
    next([&] { CargarTextos(*this); });
    next([&] { api.Marcar_Obligatorios(Controls); });
}

cCentroApi CatalogueDialog::prelude(ResumeNext& next, CaptionIds ids)
{
    cCentroApi api;
    next([&] { loadIcon(); });
    next([&] { api = cCentroApi::create(); });
    lockDown(next);
    tagCaption(next, ids);
    localise(next, api);
    return api;
}

bool CatalogueDialog::readRow(ResumeNext& next, StringView query, Integer messageId)
{
    next([&] { fetch(query); });
    return !reportedFailure(messageId);
}

void CatalogueDialog::registerRow(ResumeNext& next, const cCentroApi& api, CommandButton& accept)
{
    const cConfiguracion& session = Configuracion();
    const bool inUse = next.condition([&] {
        return api.registroactivo(session.conLocalCentro, Name(), session.lngRowData, session.intIDUsuario);
    });
    if (!inUse)
        return;
    next([&] { accept.Enabled = false; });
    next([&] { MarcaBloqueo = u"B"; });
}

void CatalogueDialog::fetch(StringView query)
{
    rows_.reset();
    rows_ = execute(query);
}

RecordsetPtr CatalogueDialog::rows() const
{
    if (!rows_)
        fail(failure::noObject);
    return rows_;
}

void CatalogueDialog::makeSafe(ResumeNext& next, const cCentroApi& api)
{
    next([&] { api.ComprobarComilla(Controls); });
}

bool CatalogueDialog::everyFieldGiven()
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

bool CatalogueDialog::update(ResumeNext& next, const std::function<String()>& statement)
{
    next([&] { execute(statement()); });
    if (!reportedFailure(message::updateFailed))
        return true;
    MousePointer = Integer{0};
    return false;
}

Value CatalogueDialog::drawKey(const cCentroApi& api, StringView table, StringView key)
{
    const cConfiguracion& session = Configuracion();
    return api.IDMax(session.conLocalCentro, session.conLocalBorradoCentro, table, key);
}

void CatalogueDialog::insertLoop(ResumeNext& next, const std::function<void()>& draw,
                                 const std::function<String()>& statementFor)
{
    for (;;) {
        Err().Clear();
        // Without a key nothing is inserted: a row 0 would be announced as a failure, and stay.
        const bool drawn = next(draw);
        if (drawn)
            next([&] { execute(statementFor()); });
        if (Err().Number == 0)
            return;
        if (Err().Number == failure::keyExists && drawn)
            continue;
        showMessage(message::insertFailed, sign::critical);
        return;
    }
}

bool CatalogueDialog::unreferenced(std::span<const StringView> queries)
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

void CatalogueDialog::addRows(ComboBox& list, StringView text, StringView data)
{
    for (; !rows()->Eof(); rows()->MoveNext()) {
        list.AddItem(String() + field(text));
        list.setItemData(list.NewIndex(), CLng(field(data)));
    }
}

void CatalogueDialog::choose(ComboBox& list, const Value& data)
{
    if (data.isNull())
        return;
    const Long entry = list.find(CLng(data));
    if (entry >= 0)
        list.ListIndex = entry;
}

void CatalogueDialog::releaseRow()
{
    if (changesRow() && MarcaBloqueo() != u"B")
        unregisterRow();
}

void CatalogueDialog::unregisterRow()
{
    const cConfiguracion& session = Configuracion();
    cCentroApi::create().EliminarRegistroActivo(session.conLocalCentro, Name(), session.lngRowData);
}

void CatalogueDialog::leaveScreen()
{
    if (Visible)
        Hide();
    DoEvents();
}

void CatalogueDialog::closeRows()
{
    ResumeNext next;
    next([&] { rows()->Close(); });
    rows_.reset();
    ResumeNext::leave();
}

void CatalogueDialog::designLabel(Label& label, StringView caption, Integer captionId, bool mandatory)
{
    label.Caption = String(caption);
    if (captionId != 0)
        label.Tag = decimalText(captionId);
    if (mandatory)
        label.Marca = u"*";
}

void CatalogueDialog::designField(Label& label, StringView caption, Integer captionId, TextBox& box,
                                  Long width, bool mandatory)
{
    designLabel(label, caption, captionId, mandatory);
    box.MaxLength = width;
    selectAllOnFocus(box);
}

void CatalogueDialog::designButton(CommandButton& button, StringView caption, Integer captionId)
{
    button.Caption = String(caption);
    if (captionId != 0)
        button.Tag = decimalText(captionId);
}

void CatalogueDialog::designButtons(CommandButton& accept, CommandButton& cancel)
{
    designButton(accept, u"Aceptar", 334);
    designButton(cancel, u"Cancelar", 335);
}

void CatalogueDialog::selectAllOnFocus(TextBox& box)
{
    box.GotFocus.bind([&box] {
        box.SelStart = Long{0};
        box.SelLength = static_cast<Long>(box.Text().size());
    });
}

} // namespace zv
