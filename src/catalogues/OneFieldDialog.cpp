#include "catalogues/OneFieldDialog.h"

#include "forms/Layout.h"

namespace zv {

void OneFieldDialog::assemble(TextBox& text, Label& label, StringView caption, Integer captionId, Buttons& buttons,
                              Long width)
{
    text_ = &text;
    buttons_ = &buttons;
    text.MaxLength = width;
    label.Caption = String(caption);
    if (captionId != 0)
        label.Tag = decimalText(captionId);
    label.Marca = String(u"*");
    selectAllOnFocus(text);
    designButtons(buttons(aceptar), buttons(cancelar));
    for (CommandButton& button : buttons)
        button.Click.bind([this, index = button.Index()] { button_Click(index); });
    Layout(*this).row(label, text).buttons(buttons(aceptar), buttons(cancelar));
}

void OneFieldDialog::Form_Load()
{
    Hourglass wait(*this);
    ResumeNext next;
    const cCentroApi api = prelude(next, words_.captions);
    if (!changesRow())
        return;
    Err().Clear();
    showRow(next, api, u" ");
}

void OneFieldDialog::showRow(ResumeNext& next, const cCentroApi& api, StringView blank)
{
    if (!readRow(next, forRow(words_.load)))
        return;
    next([&] { Caption = Caption + blank + field(words_.column); });
    next([&] { text_->Text = field(words_.column); });
    registerRow(next, api, (*buttons_)(aceptar));
}

void OneFieldDialog::button_Click(int Index)
{
    const cCentroApi api = cCentroApi::create();
    ResumeNext next;
    if (Index == aceptar) {
        if (!textGiven())
            return;
        MousePointer = Integer{11};
        makeSafe(next, api);
        if (!write(next, api))
            return;
    }
    next([&] { Unload(); });
}

void OneFieldDialog::clickSafeFirst(int Index)
{
    ResumeNext next;
    cCentroApi api;
    next([&] { api = cCentroApi::create(); });
    if (Index == aceptar) {
        makeSafe(next, api);
        if (!textGiven())
            return;
        MousePointer = Integer{11};
        if (!write(next, api))
            return;
    }
    next([&] { Unload(); });
}

bool OneFieldDialog::textGiven()
{
    if (!isBlank(*text_))
        return true;
    warn(message::fieldsMissing, sign::information);
    return false;
}

bool OneFieldDialog::write(ResumeNext& next, const cCentroApi& api)
{
    if (!createsRow())
        return update(next, statement(words_.update, {text_->Text(), Configuracion().lngRowData}));
    insert<Integer>(next, api, words_.table, words_.key, CInt,
                    [&](Integer id) { return statement(words_.insert, {id, text_->Text()}); });
    return true;
}

void OneFieldDialog::Form_Unload()
{
    releaseRow();
    leaveScreen();
    closeRows();
}

} // namespace zv
