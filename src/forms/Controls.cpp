#include "forms/Controls.h"

#include "forms/Form.h"

#include <algorithm>

namespace zv {

namespace {

Long lengthOf(const String& text) { return static_cast<Long>(text.size()); }

/// The text up to its first character of code 0, as much as a box holds.
StringView shown(StringView text) { return text.substr(0, text.find(u'\0')); }

} // namespace

Label::Label(Container& container, StringView name, int index) : Control(container, u"Label", name, index) {}
Label::~Label() = default;

TextBox::TextBox(Container& container, StringView name, int index)
    : Control(container, u"TextBox", name, index)
{}
TextBox::~TextBox() = default;

CommandButton::CommandButton(Container& container, StringView name, int index)
    : Control(container, u"CommandButton", name, index)
{}
CommandButton::~CommandButton() = default;

CheckBox::CheckBox(Container& container, StringView name, int index)
    : Control(container, u"CheckBox", name, index)
{}
CheckBox::~CheckBox() = default;

OptionButton::OptionButton(Container& container, StringView name, int index)
    : Control(container, u"OptionButton", name, index)
{}
OptionButton::~OptionButton() = default;

Frame::Frame(Container& container, StringView name, int index) : Control(container, u"Frame", name, index) {}
Frame::~Frame() = default;

void TextBox::change(const String& text, Long caret)
{
    const bool differs = text != Text();
    Text.store(text);
    SelStart.store(caret);
    SelLength.store(0);
    if (!differs)
        return;
    TextoDoblado.store({});
    Change.raise();
}

void TextBox::assignText(const String& text)
{
    const auto width = static_cast<std::size_t>(MaxLength());
    change(String(width > 0 ? cut(shown(text), width) : shown(text)), 0);
}

void TextBox::assignSelStart(Long start)
{
    if (start < 0)
        fail(failure::invalidProperty, u"SelStart");
    SelStart.store(std::min(start, lengthOf(Text())));
    SelLength.store(0);
}

void TextBox::assignSelLength(Long length)
{
    if (length < 0)
        fail(failure::invalidProperty, u"SelLength");
    SelLength.store(std::min(length, lengthOf(Text()) - SelStart()));
}

void TextBox::replaceSelection(StringView text)
{
    text = shown(text);
    String whole = Text();
    const auto start = static_cast<std::size_t>(SelStart());
    whole.erase(start, static_cast<std::size_t>(SelLength()));
    if (MaxLength() > 0) {
        const auto width = static_cast<std::size_t>(MaxLength());
        text = cut(text, width > whole.size() ? width - whole.size() : 0);
    }
    whole.insert(start, text);
    change(whole, static_cast<Long>(start + text.size()));
}

void TextBox::typeText(StringView text)
{
    const Long kept = lengthOf(Text()) - SelLength();
    if (MaxLength() == 0 || kept + static_cast<Long>(text.size()) <= MaxLength())
        replaceSelection(text);
}

Long TextBox::stepBefore(Long at) const
{
    if (at == 0)
        return 0;
    const StringView start = StringView(Text()).substr(0, static_cast<std::size_t>(at));
    return at > 1 && isWellFormed(start.substr(start.size() - 2)) &&
                   !isWellFormed(start.substr(start.size() - 1))
               ? at - 2
               : at - 1;
}

Long TextBox::stepAfter(Long at) const
{
    const StringView rest = StringView(Text()).substr(static_cast<std::size_t>(at));
    if (rest.empty())
        return at;
    return at + (cut(rest, 1).empty() ? 2 : 1);
}

void CommandButton::assignRole(Property<bool>& role, bool on)
{
    if (on)
        for (Control* other : form().Controls)
            if (auto* button = dynamic_cast<CommandButton*>(other))
                (&role == &Default ? button->Default : button->Cancel).store(false);
    role.store(on);
}

void CommandButton::press(bool on)
{
    if (on)
        Click.raise();
}

void CheckBox::assignValue(Integer value)
{
    if (value != 0 && value != 1)
        fail(failure::invalidProperty, u"Value");
    if (value == Value())
        return;
    Value.store(value);
    Click.raise();
}

void OptionButton::assignValue(bool on)
{
    if (on == Value())
        return;
    if (!on) {
        Value.store(false);
        return;
    }
    for (Control* other : form().Controls)
        if (auto* option = dynamic_cast<OptionButton*>(other);
            option != nullptr && option->frame() == frame())
            option->Value.store(option == this);
    Click.raise();
}

} // namespace zv
