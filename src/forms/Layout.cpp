#include "forms/Layout.h"

#include <algorithm>
#include <utility>

namespace zv {

namespace {

constexpr Long margin = 240;     ///< Around the dialog, and within a frame.
constexpr Long gap = 120;        ///< Between two rows, and between two buttons.
constexpr Long labelGap = 300;   ///< Between a label and its field; room for the mandatory sign.
constexpr Long character = 105;  ///< Width of an ordinary character.
constexpr Long lineHeight = 315; ///< Height of a field of one line.
constexpr Long textLine = 240;   ///< Height of each further line.
constexpr Long severalLines = 3; ///< Of a text box of several lines.
/// By which a label stands lower than its field, so that their texts are level.
constexpr Long labelDrop = 45;
constexpr Long narrowest = 600;
constexpr Long widest = 4800;
constexpr Long boxSign = 330; ///< The box or circle before a caption.
constexpr Long smallButton = 360;
constexpr Long buttonWidth = 1300;
constexpr Long buttonHeight = 390;
constexpr Long frameTitle = 400;  ///< From the top of a frame, where its title stands, to what is in it.
constexpr Long frameFoot = 140;   ///< Below what is in it, as much as views leave under the title.
constexpr Long stripHeader = 360; ///< The row of the tabs.
constexpr Long tabPadding = 240;  ///< Around the caption of a tab.

void put(Control& control, Long left, Long top, Long width, Long height)
{
    control.Left = left;
    control.Top = top;
    control.Width = width;
    control.Height = height;
}

/// Width of a text in the ordinary font of 8 to 9 points.
Long textWidth(StringView text)
{
    constexpr StringView narrow = u"iljtfrI.,:;'()| ";
    constexpr StringView broad = u"mwMW%@";
    Long width = 0;
    for (const char16_t unit : text) {
        if (narrow.find(unit) != StringView::npos)
            width += 65;
        else if (broad.find(unit) != StringView::npos)
            width += 155;
        else
            width += unit >= u'A' && unit <= u'Z' ? 125 : character;
    }
    return width;
}

const Property<String>* captionOf(const Control& control)
{
    if (const auto* box = dynamic_cast<const CheckBox*>(&control))
        return &box->Caption;
    const auto* option = dynamic_cast<const OptionButton*>(&control);
    return option == nullptr ? nullptr : &option->Caption;
}

Long fieldWidth(const Control& field)
{
    if (const auto* caption = captionOf(field))
        return boxSign + textWidth((*caption)()) + character;
    const auto* text = dynamic_cast<const TextBox*>(&field);
    if (text == nullptr || text->MaxLength() == 0)
        return widest;
    return std::clamp((text->MaxLength() + 2) * character, narrowest, widest);
}

Long fieldHeight(const Control& field)
{
    const auto* text = dynamic_cast<const TextBox*>(&field);
    return text != nullptr && text->MultiLine() ? lineHeight + (severalLines - 1) * textLine : lineHeight;
}

Long barWidth(std::size_t buttons)
{
    const auto count = static_cast<Long>(buttons);
    return count * buttonWidth + (count - 1) * gap;
}

Long tabsWidth(TabStrip& strip)
{
    Long width = 0;
    for (Long tab = 1; tab <= strip.tabCount(); ++tab)
        width += textWidth(strip.Tabs(tab).Caption) + tabPadding;
    return width;
}

/// Downcast: the frame whose inside is laid out.
Frame& frameOf(Container& container) { return dynamic_cast<Frame&>(*container.asControl()); }

} // namespace

Layout& Layout::add(Item item)
{
    items_.push_back(std::move(item));
    return *this;
}

Layout& Layout::labels(StringView sample)
{
    sample_ = std::max(sample_, textWidth(sample));
    return *this;
}

Layout& Layout::row(Label& label, Control& field, std::initializer_list<CommandButton*> small)
{
    field.labelledBy(label);
    for (CommandButton* button : small)
        button->labelledBy(label);
    Item item{Shape::beside, &label, {&field}, 1, {}, {}};
    item.controls.insert(item.controls.end(), small.begin(), small.end());
    return add(std::move(item));
}

Layout& Layout::above(Label& label, Control& field)
{
    field.labelledBy(label);
    return add({Shape::above, &label, {&field}, 1, {}, {}});
}

Layout& Layout::line(std::initializer_list<Control*> controls)
{
    return add({Shape::line, nullptr, controls, 1, {}, {}});
}

Layout& Layout::block(Control& control, Long lines)
{
    return add({Shape::block, nullptr, {&control}, lines, {}, {}});
}

Layout& Layout::bar(std::initializer_list<CommandButton*> buttons)
{
    return add({Shape::bar, nullptr, {buttons.begin(), buttons.end()}, 1, {}, {}});
}

Layout& Layout::frame(Frame& frame, Layout inside)
{
    return add({Shape::frame, nullptr, {&frame}, 1, {std::move(inside)}, {}});
}

Layout& Layout::tabs(TabStrip& strip, std::initializer_list<Layout> pages)
{
    for (const Layout& page : pages)
        frameOf(page.container_).Border = false;
    return add({Shape::tabs, nullptr, {&strip}, 1, pages, {}});
}

Layout& Layout::over(Control& control)
{
    items_.back().over.push_back(&control);
    return *this;
}

Layout& Layout::floating(Control& field)
{
    put(field, 0, 0, fieldWidth(field), lineHeight);
    return *this;
}

Long Layout::labelColumn() const
{
    Long width = sample_;
    for (const Item& item : items_)
        if (item.shape == Shape::beside)
            width = std::max(width, textWidth(item.label->Caption()));
    return width == 0 ? 0 : width + labelGap;
}

Long Layout::neededWidth() const
{
    Long width = 0;
    for (const Item& item : items_)
        width = std::max(width, neededWidth(item));
    return width;
}

Long Layout::neededWidth(const Item& item) const
{
    Long width = 0;
    switch (item.shape) {
    case Shape::beside:
        return labelColumn() + fieldWidth(*item.controls.front()) +
               static_cast<Long>(item.controls.size() - 1) * (smallButton + gap / 2);
    case Shape::line:
        for (const Control* control : item.controls)
            width = std::max(width, labelColumn() + fieldWidth(*control));
        return width;
    case Shape::above:
        return std::max(widest, textWidth(item.label->Caption()) + labelGap);
    case Shape::block:
        return widest;
    case Shape::bar:
        return barWidth(item.controls.size());
    case Shape::tabs:
        width = tabsWidth(dynamic_cast<TabStrip&>(*item.controls.front()));
        break;
    case Shape::frame:
        break;
    }
    for (const Layout& page : item.pages)
        width = std::max(width, page.neededWidth() + 2 * margin);
    return width;
}

Long Layout::place(Long left, Long top, Long width) const
{
    for (const Item& item : items_)
        top = placeItem(item, left, top, width) + gap;
    return items_.empty() ? top : top - gap;
}

Long Layout::placeItem(const Item& item, Long left, Long top, Long width) const
{
    Control& first = *item.controls.front();
    switch (item.shape) {
    case Shape::beside:
        return placeRow(item, left, top);
    case Shape::above:
        put(*item.label, left, top, width, textLine);
        put(first, left, top + textLine, width, fieldHeight(first));
        return first.Top() + first.Height();
    case Shape::line:
        for (Control* control : item.controls) {
            put(*control, left + labelColumn(), top, fieldWidth(*control), fieldHeight(*control));
            top += control->Height() + gap;
        }
        return top - gap;
    case Shape::block:
        put(first, left, top, width, lineHeight + (item.lines - 1) * textLine);
        break;
    case Shape::bar: {
        Long at = left + width - barWidth(item.controls.size());
        for (Control* button : item.controls) {
            put(*button, at, top, buttonWidth, buttonHeight);
            at += buttonWidth + gap;
        }
        break;
    }
    case Shape::frame:
        return top + item.pages.front().placeFrame(left, top, width);
    case Shape::tabs:
        return placePages(item, left, top, width);
    }
    return top + first.Height();
}

Long Layout::placeRow(const Item& item, Long left, Long top) const
{
    Control& field = *item.controls.front();
    put(*item.label, left, top + labelDrop, labelColumn(), lineHeight - labelDrop);
    put(field, left + labelColumn(), top, fieldWidth(field), fieldHeight(field));
    Long at = field.Left() + field.Width() + gap / 2;
    for (auto small = item.controls.begin() + 1; small != item.controls.end(); ++small) {
        put(**small, at, top, smallButton, lineHeight);
        at += smallButton + gap / 2;
    }
    return top + field.Height();
}

Long Layout::placePages(const Item& item, Long left, Long top, Long width)
{
    const Long pageLeft = left + gap / 2;
    const Long pageTop = top + stripHeader;
    const Long pageWidth = width - gap;
    Long height = 0;
    for (const Layout& page : item.pages)
        height = std::max(height, page.placeFrame(pageLeft, pageTop, pageWidth));
    for (const Layout& page : item.pages)
        frameOf(page.container_).Height = height;
    for (Control* control : item.over)
        put(*control, pageLeft, pageTop, pageWidth, height);
    put(*item.controls.front(), left, top, width, stripHeader + height + gap / 2);
    return pageTop + height + gap / 2;
}

Long Layout::placeFrame(Long left, Long top, Long width) const
{
    Frame& frame = frameOf(container_);
    const Long title = frame.Border() ? frameTitle : gap;
    const Long side = frame.Border() ? margin : gap;
    const Long foot = frame.Border() ? frameFoot : gap;
    put(frame, left, top, width, place(side, title, width - 2 * side) + foot);
    return frame.Height();
}

void Layout::buttons(CommandButton& accept, CommandButton& cancel, ButtonKeys keys)
{
    bar({&accept, &cancel});
    accept.Default = keys == ButtonKeys::enterAndEscape;
    cancel.Cancel = keys != ButtonKeys::none;
    end();
}

void Layout::end()
{
    const Long width = neededWidth();
    Form& form = container_.containingForm();
    form.Height = place(margin, margin, width) + margin;
    form.Width = width + 2 * margin;
}

} // namespace zv
