#include "catalogues/TextCatalogue.h"

#include <algorithm>

namespace zv {

TextCatalogueDialog::TextCatalogueDialog(StringView name, const TextCatalogue& words)
    : CatalogueDialog(name), words_(words)
{}
TextCatalogueDialog::~TextCatalogueDialog() = default;

bool TextCatalogueDialog::ComprobarEliminacion()
{
    if (words_.guards.empty())
        return true;
    const bool free = unreferenced(words_.guards);
    if (!words_.keepsRows)
        closeRows();
    return free;
}

void TextCatalogueDialog::design(std::initializer_list<TextField> fields, CommandButton& accept,
                                 CommandButton& cancel, const Extra& extra)
{
    accept_ = &accept;
    cancel_ = &cancel;
    Layout layout(*this);
    for (const TextField& field : fields) {
        fields_.push_back(field);
        designLabel(field.label, field.caption, field.captionId, field.mandatory);
        if (field.captionId != 0)
            layout.labels(LoadResString(field.captionId));
        field.box.MaxLength = field.width;
        if (field.selectsAll)
            selectAllOnFocus(field.box);
        layout.row(field.label, field.box);
    }
    if (extra)
        extra(layout);
    designButtons(accept, cancel);
    layout.buttons(accept, cancel);
}

void TextCatalogueDialog::assemble(std::initializer_list<TextField> fields, CommandButton& accept,
                                   CommandButton& cancel, const Extra& extra)
{
    design(fields, accept, cancel, extra);
    on(accept.Click, &TextCatalogueDialog::cmdAceptar_Click);
    on(cancel.Click, &TextCatalogueDialog::cmdCancelar_Click);
}

void TextCatalogueDialog::Form_Load()
{
    Hourglass wait(*this);
    cCentroApi api;
    if (words_.begins == Begins::iconAndObjectBefore)
        loadIcon();
    if (words_.begins != Begins::inMode)
        api = cCentroApi::create();
    ResumeNext next;
    if (words_.begins != Begins::iconAndObjectBefore)
        next([&] { loadIcon(); });
    if (words_.begins == Begins::inMode)
        next([&] { api = cCentroApi::create(); });
    lockDown(next);
    title(next);
    localise(next, api);
    if (!beforeRow(next) || !changesRow())
        return;
    if (words_.clearsErr)
        Err().Clear();
    showRow(next, api);
}

void TextCatalogueDialog::showRow(ResumeNext& next, const cCentroApi& api)
{
    if (!readRow(next, forRow(words_.load), words_.readFailed))
        return;
    fill(next);
    if (words_.locksRow)
        registerRow(next, api, *accept_);
    if (!words_.keepsRows)
        closeRows();
}

bool TextCatalogueDialog::beforeRow(ResumeNext&) { return true; }

void TextCatalogueDialog::fill(ResumeNext& next)
{
    next([&] { Caption = Caption + words_.blank + field(fields_.front().column); });
    for (const TextField& shown : fields_)
        next([&] { shown.box.Text = field(shown.column); });
}

void TextCatalogueDialog::button_Click(int Index)
{
    const cCentroApi api = cCentroApi::create();
    ResumeNext next;
    if (Index == aceptar && !(textGiven() && accepted(next, api)))
        return;
    next([&] { Unload(); });
}

void TextCatalogueDialog::clickInMode(int Index)
{
    ResumeNext next;
    cCentroApi api;
    next([&] { api = cCentroApi::create(); });
    if (Index == aceptar && !(textGiven() && accepted(next, api)))
        return;
    next([&] { Unload(); });
}

void TextCatalogueDialog::clickSafeFirst(int Index)
{
    ResumeNext next;
    cCentroApi api;
    next([&] { api = cCentroApi::create(); });
    if (Index == aceptar) {
        makeSafe(next, api);
        if (!acceptedSafe(next, api))
            return;
    }
    next([&] { Unload(); });
}

void TextCatalogueDialog::cmdAceptar_Click()
{
    const cCentroApi api = cCentroApi::create();
    ResumeNext next;
    if (textGiven() && accepted(next, api))
        next([&] { cancel_->Value = true; });
}

bool TextCatalogueDialog::acceptedSafe(ResumeNext& next, const cCentroApi& api)
{
    if (!textGiven())
        return false;
    MousePointer = Integer{11};
    return write(next, api);
}

bool TextCatalogueDialog::textGiven()
{
    if (words_.test == EmptyTest::everyBox)
        return everyFieldGiven();
    if (!isBlank(firstBox()))
        return true;
    warn(message::fieldsMissing, sign::information);
    if (words_.test == EmptyTest::firstFieldThenFocus)
        firstBox().SetFocus();
    return false;
}

bool TextCatalogueDialog::accepted(ResumeNext& next, const cCentroApi& api)
{
    MousePointer = Integer{11};
    makeSafe(next, api);
    return write(next, api);
}

std::vector<Value> TextCatalogueDialog::values()
{
    std::vector<Value> texts;
    std::transform(fields_.begin(), fields_.end(), std::back_inserter(texts),
                   [](const TextField& field) { return Value(field.box.Text()); });
    return texts;
}

bool TextCatalogueDialog::write(ResumeNext& next, const cCentroApi& api)
{
    if (!createsRow())
        return update(next, [&] {
            std::vector<Value> written = values();
            written.emplace_back(Configuracion().lngRowData);
            return statement(words_.update, written);
        });
    const auto insertion = [&](Long id) {
        std::vector<Value> written = values();
        written.insert(written.begin(), Value(id));
        return statement(words_.insert, written);
    };
    if (words_.longKey)
        insert<Long>(next, api, words_.table, words_.key, CLng, insertion);
    else
        insert<Integer>(next, api, words_.table, words_.key, CInt, insertion);
    Err().Clear();
    return true;
}

void TextCatalogueDialog::Form_Unload()
{
    releaseRow();
    leaveScreen();
    if (words_.keepsRows)
        closeRows();
}

} // namespace zv
