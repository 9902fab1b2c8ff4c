#include "forms/Acts.h"
#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "runtime/Letters.h"

#include <algorithm>
#include <utility>

namespace zv {

namespace {

constexpr Integer codeOf(Key key)
{
    switch (key) {
    case Key::Backspace:
        return 8;
    case Key::Tab:
    case Key::BackTab:
        return 9;
    case Key::Enter:
        return 13;
    case Key::Escape:
        return 27;
    case Key::End:
        return 35;
    case Key::Home:
        return 36;
    case Key::Left:
        return 37;
    case Key::Up:
        return 38;
    case Key::Right:
        return 39;
    case Key::Down:
        return 40;
    case Key::Delete:
        return 46;
    }
    return 0;
}

/// Key code of a character: that of the capital letter, digit or blank; -1 (never 0, which discards the key)
/// for what stands elsewhere on each keyboard.
Integer codeOf(StringView character)
{
    const char16_t unit = lowerName(character).front();
    if (unit >= u'a' && unit <= u'z')
        return static_cast<Integer>(unit - u'a' + u'A');
    return (unit >= u'0' && unit <= u'9') || unit == u' ' ? static_cast<Integer>(unit) : Integer{-1};
}

/// Key for the KeyAscii that a handler left; Backspace is the one named key with such a number.
Keystroke keyOfAscii(Integer ascii)
{
    if (ascii == 8)
        return Key::Backspace;
    return String(1, static_cast<char16_t>(ascii));
}

template <class C>
CommandButton* buttonWith(Form& form, C role)
{
    for (Control* control : form.Controls)
        if (auto* button = dynamic_cast<CommandButton*>(control); button != nullptr && (button->*role)())
            return button;
    return nullptr;
}

/// Next visible column, in steps from the given one; the current one if there is none.
Long seenColumn(const MSFlexGrid& grid, Long from, Long step)
{
    for (Long column = from; column >= 0 && column < grid.Cols(); column += step)
        if (grid.ColWidth(column) != 0)
            return column;
    return grid.Col();
}

} // namespace

void Acts::pressSentKeys(Form& form)
{
    while (const auto sent = sentKeys().next()) {
        Control* focus = form.ActiveControl();
        if (focus != nullptr)
            reach(*focus, [&] { press(*focus, *sent); });
    }
}

void Acts::press(Control& control, const Keystroke& key)
{
    const Key* named = std::get_if<Key>(&key);
    if (named != nullptr && pressFormKey(control, *named))
        return;
    const String* character = std::get_if<String>(&key);
    if (auto* box = dynamic_cast<TextBox*>(&control))
        pressInText(*box, key);
    else if (auto* list = dynamic_cast<ComboBox*>(&control))
        pressInList(*list, key);
    else if (character != nullptr && *character == u" ")
        activate(control);
    else if (named == nullptr)
        return;
    else if (auto* grid = dynamic_cast<MSFlexGrid*>(&control))
        pressInGrid(*grid, *named);
    else if (auto* strip = dynamic_cast<TabStrip*>(&control))
        pressInTabs(*strip, *named);
    else if (auto* option = dynamic_cast<OptionButton*>(&control))
        pressAmongOptions(*option, *named);
}

bool Acts::pressFormKey(Control& control, Key key)
{
    if (key == Key::Tab || key == Key::BackTab) {
        Form& form = control.form();
        form.moveFocus(form.nextFocus(&control, key == Key::Tab), true);
        return true;
    }
    if (key != Key::Enter && key != Key::Escape)
        return false;
    const bool enter = key == Key::Enter;
    auto* pressed = enter ? dynamic_cast<CommandButton*>(&control) : nullptr;
    if (pressed == nullptr)
        pressed = buttonWith(control.form(), enter ? &CommandButton::Default : &CommandButton::Cancel);
    if (pressed == nullptr)
        return !enter || dynamic_cast<TextBox*>(&control) == nullptr;
    raise(*pressed, pressed->Click);
    return true;
}

void Acts::pressInText(TextBox& box, const Keystroke& key)
{
    const Key* named = std::get_if<Key>(&key);
    Integer code = named != nullptr ? codeOf(*named) : codeOf(StringView(std::get<String>(key)));
    raise<Integer&>(box, box.KeyDown, code);
    if (code == 0 || !box.accessible())
        return;
    const bool hasCharacter = named == nullptr || *named == Key::Backspace || *named == Key::Enter;
    if (!hasCharacter) {
        box.form().guarded([&] { editText(box, *named); });
        return;
    }
    const Integer before =
        named != nullptr ? codeOf(*named) : static_cast<Integer>(std::get<String>(key).front());
    Integer ascii = before;
    raise<Integer&>(box, box.KeyPress, ascii);
    if (ascii == 0 || !box.accessible())
        return;
    const Keystroke typed = ascii == before ? key : keyOfAscii(ascii);
    box.form().guarded([&] {
        if (const auto* text = std::get_if<String>(&typed))
            box.typeText(*text);
        else
            editText(box, std::get<Key>(typed));
    });
}

void Acts::editText(TextBox& box, Key key)
{
    const Long end = static_cast<Long>(box.Text().size());
    const Long start = box.SelStart();
    const bool selected = box.SelLength() > 0;
    const auto before = [&box](Long at) { return box.stepBefore(at); };
    const auto after = [&box](Long at) { return box.stepAfter(at); };
    switch (key) {
    case Key::Home:
        box.SelStart = Long{0};
        break;
    case Key::End:
        box.SelStart = end;
        break;
    case Key::Left:
        box.SelStart = selected ? start : before(start);
        break;
    case Key::Right:
        box.SelStart = selected ? start + box.SelLength() : after(start);
        break;
    case Key::Backspace:
    case Key::Delete:
        if (!selected) {
            const Long from = key == Key::Backspace ? before(start) : start;
            const Long to = key == Key::Backspace ? start : after(start);
            box.SelStart = from;
            box.SelLength = to - from;
        }
        box.replaceSelection({});
        break;
    case Key::Enter:
        if (box.MultiLine())
            box.typeText(u"\r\n");
        break;
    default:
        break;
    }
}

void Acts::pressInList(ComboBox& box, const Keystroke& key)
{
    const Long count = box.ListCount();
    if (count == 0)
        return;
    const Long now = box.ListIndex();
    Long next = now;
    if (const auto* character = std::get_if<String>(&key)) {
        const String letter = lowerLetters(*character);
        for (Long step = 1; step <= count; ++step) {
            const Long candidate = (now + step + count) % count;
            const String& text = box.List(candidate);
            if (lowerLetters(StringView(text).substr(0, letter.size())) == letter) {
                next = candidate;
                break;
            }
        }
    } else {
        switch (std::get<Key>(key)) {
        case Key::Up:
        case Key::Left:
            next = std::max<Long>(now - 1, 0);
            break;
        case Key::Down:
        case Key::Right:
            next = std::min(now + 1, count - 1);
            break;
        case Key::Home:
            next = 0;
            break;
        case Key::End:
            next = count - 1;
            break;
        default:
            return;
        }
    }
    box.form().guarded([&] { box.ListIndex = next; });
}

void Acts::pressInGrid(MSFlexGrid& grid, Key key)
{
    Long row = grid.Row();
    Long column = grid.Col();
    switch (key) {
    case Key::Up:
        row = std::max<Long>(row - 1, 1);
        break;
    case Key::Down:
        ++row;
        break;
    case Key::Left:
        column = seenColumn(grid, column - 1, -1);
        break;
    case Key::Right:
        column = seenColumn(grid, column + 1, 1);
        break;
    case Key::Home:
        column = seenColumn(grid, 0, 1);
        break;
    case Key::End:
        column = seenColumn(grid, grid.Cols() - 1, -1);
        break;
    default:
        return;
    }
    if (row >= grid.Rows())
        return;
    if (row < grid.TopRow())
        scrollTo(grid, row);
    else if (row >= grid.TopRow() + grid.visibleRows())
        scrollTo(grid, row - grid.visibleRows() + 1);
    enterCell(grid, row, column);
}

void Acts::pressInTabs(TabStrip& strip, Key key)
{
    const Long now = strip.SelectedItem().Index();
    Long next = now;
    switch (key) {
    case Key::Left:
    case Key::Up:
        next = std::max<Long>(now - 1, 1);
        break;
    case Key::Right:
    case Key::Down:
        next = std::min(now + 1, strip.tabCount());
        break;
    case Key::Home:
        next = 1;
        break;
    case Key::End:
        next = strip.tabCount();
        break;
    default:
        return;
    }
    if (next != now)
        strip.form().guarded([&] { strip.Tabs(next).select(); });
}

void Acts::pressAmongOptions(OptionButton& option, Key key)
{
    const bool forward = key == Key::Down || key == Key::Right;
    if (!forward && key != Key::Up && key != Key::Left)
        return;
    Form& form = option.form();
    Control* other = form.nextFocus(&option, forward);
    while (other != nullptr && other != &option) {
        auto* neighbour = dynamic_cast<OptionButton*>(other);
        if (neighbour != nullptr && neighbour->frame() == option.frame()) {
            form.moveFocus(neighbour, true);
            form.guarded([&] { neighbour->Value = true; });
            return;
        }
        other = form.nextFocus(other, forward);
    }
}

} // namespace zv
