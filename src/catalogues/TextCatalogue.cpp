#include "catalogues/TextCatalogue.h"

#include "forms/Desktop.h"

#include <algorithm>

namespace zv {

namespace {

bool endsRoutine(Step each)
{
    using step = TextCatalogueDialog::step;
    return each == step::close || each == step::unload || each == step::press;
}

} // namespace

TextCatalogueDialog::TextCatalogueDialog(StringView name, const TextCatalogue& words)
    : MaintenanceDialog(name), words_(words)
{}
TextCatalogueDialog::~TextCatalogueDialog() = default;

void TextCatalogueDialog::run(Steps steps, Routine& routine)
{
    bool finishing = false;
    for (const Step each : steps) {
        if (finishing && !endsRoutine(each))
            continue;
        switch ((this->*each)(routine)) {
        case Then::goOn:
            break;
        case Then::finish:
            finishing = true;
            break;
        case Then::leave:
            return;
        }
    }
}

void TextCatalogueDialog::Form_Load()
{
    Hourglass wait(*this);
    Routine routine;
    run(words_.load, routine);
}

bool TextCatalogueDialog::ComprobarEliminacion()
{
    Routine routine;
    run(words_.guard, routine);
    return routine.answer;
}

void TextCatalogueDialog::Form_Unload()
{
    Routine routine;
    run(words_.unload, routine);
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

void TextCatalogueDialog::assemble(std::initializer_list<TextField> fields,
                                   ControlArray<CommandButton, 2>& buttons, const Extra& extra, int accepts)
{
    design(fields, buttons(accepts), buttons(1 - accepts), extra);
    for (CommandButton& button : buttons)
        button.Click.bind([this, index = button.Index()] {
            Routine routine(index);
            run(words_.accept, routine);
        });
}

void TextCatalogueDialog::assemble(std::initializer_list<TextField> fields, CommandButton& accept,
                                   CommandButton& cancel, const Extra& extra)
{
    design(fields, accept, cancel, extra);
    accept.Click.bind([this] {
        Routine routine;
        run(words_.accept, routine);
    });
    cancel.Click.bind([this] { Unload(); });
}

Then TextCatalogueDialog::enterMode(Routine& routine)
{
    routine.enterMode();
    return Then::goOn;
}

Then TextCatalogueDialog::createObject(Routine& routine)
{
    routine([&] { routine.api = cCentroApi::create(); });
    return Then::goOn;
}

Then TextCatalogueDialog::setIcon(Routine& routine)
{
    routine([&] { loadIcon(); });
    return Then::goOn;
}

Then TextCatalogueDialog::lockControls(Routine& routine)
{
    lockDown(routine.next());
    return Then::goOn;
}

Then TextCatalogueDialog::tagTitle(Routine& routine)
{
    tagCaption(routine.next(), words_.captions);
    return Then::goOn;
}

Then TextCatalogueDialog::setCaption(Routine& routine)
{
    const CaptionTexts& texts = words_.captionTexts;
    routine([&] { Caption = String(changesRow() ? texts.modificado : texts.nuevo); });
    return Then::goOn;
}

Then TextCatalogueDialog::showTexts(Routine& routine)
{
    localise(routine.next(), routine.api);
    return Then::goOn;
}

Then TextCatalogueDialog::onlyExisting(Routine& /*routine*/)
{
    return changesRow() ? Then::goOn : Then::finish;
}

Then TextCatalogueDialog::clearErr(Routine& /*routine*/)
{
    Err().Clear();
    return Then::goOn;
}

Then TextCatalogueDialog::loadRow(Routine& routine)
{
    const bool read = readRow(routine.next(), forRow(words_.query), words_.readFailed);
    return read ? Then::goOn : Then::leave;
}

Then TextCatalogueDialog::fillFields(Routine& routine)
{
    fill(routine.next());
    return Then::goOn;
}

void TextCatalogueDialog::fill(ResumeNext& next)
{
    next([&] { Caption = Caption + words_.joint + field(fields_.front().column); });
    for (const TextField& shown : fields_)
        next([&] { shown.box.Text = field(shown.column); });
}

Then TextCatalogueDialog::holdRow(Routine& routine)
{
    registerRow(routine.next(), routine.api, *accept_);
    return Then::goOn;
}

Then TextCatalogueDialog::closeRecordset(Routine& /*routine*/)
{
    closeRows();
    return Then::goOn;
}

Then TextCatalogueDialog::onlyAccepting(Routine& routine)
{
    return routine.Index == accept_->Index() ? Then::goOn : Then::finish;
}

Then TextCatalogueDialog::askFirst(Routine& /*routine*/)
{
    if (!isBlank(firstBox()))
        return Then::goOn;
    warn(message::fieldsMissing, sign::information);
    return Then::leave;
}

Then TextCatalogueDialog::askFirstWithFocus(Routine& routine)
{
    if (askFirst(routine) == Then::goOn)
        return Then::goOn;
    routine([&] { firstBox().SetFocus(); });
    return Then::leave;
}

Then TextCatalogueDialog::askEvery(Routine& /*routine*/)
{
    return everyFieldGiven() ? Then::goOn : Then::leave;
}

Then TextCatalogueDialog::showHourglass(Routine& /*routine*/)
{
    MousePointer = pointer::hourglass;
    return Then::goOn;
}

Then TextCatalogueDialog::makeTextsSafe(Routine& routine)
{
    makeSafe(routine.next(), routine.api);
    return Then::goOn;
}

Then TextCatalogueDialog::onlyChanged(Routine& routine)
{
    const TextField& first = fields_.front();
    if (createsRow() ||
        routine.next().condition([&] { return first.box.Text() != String() + field(first.column); }))
        return Then::goOn;
    return Then::finish;
}

std::vector<Value> TextCatalogueDialog::values()
{
    std::vector<Value> texts;
    std::transform(fields_.begin(), fields_.end(), std::back_inserter(texts),
                   [](const TextField& field) { return Value(field.box.Text()); });
    return texts;
}

Then TextCatalogueDialog::writeRow(Routine& routine)
{
    if (!createsRow()) {
        const bool updated = update(routine.next(), [&] {
            std::vector<Value> written = values();
            written.emplace_back(Configuracion().lngRowData);
            return statement(words_.update, written);
        });
        return updated ? Then::goOn : Then::leave;
    }
    insert(routine.next(), routine.api, {words_.table, words_.key, words_.width}, [&](Long id) {
        std::vector<Value> written = values();
        written.insert(written.begin(), Value(id));
        return statement(words_.insert, written);
    });
    Err().Clear();
    return Then::goOn;
}

Then TextCatalogueDialog::unloadForm(Routine& routine)
{
    routine([&] { Unload(); });
    return Then::goOn;
}

Then TextCatalogueDialog::pressCancel(Routine& routine)
{
    routine([&] { cancel_->Value = true; });
    return Then::goOn;
}

Then TextCatalogueDialog::askGuards(Routine& routine)
{
    routine.answer = unreferenced(words_.guards);
    return Then::goOn;
}

Then TextCatalogueDialog::releaseRegistration(Routine& /*routine*/)
{
    releaseRow();
    return Then::goOn;
}

Then TextCatalogueDialog::hideForm(Routine& /*routine*/)
{
    if (Visible)
        Hide();
    return Then::goOn;
}

Then TextCatalogueDialog::letRepaint(Routine& /*routine*/)
{
    DoEvents();
    return Then::goOn;
}

} // namespace zv
