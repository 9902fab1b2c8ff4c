#include "forms/Layout.h"

#include <algorithm>

namespace zv {

namespace {

constexpr Long margin = 240;
constexpr Long gap = 120;          ///< Between two rows, and between two buttons.
constexpr Long character = 105;    ///< Width of an ordinary character.
constexpr Long lineHeight = 315;   ///< Height of a field of one line.
constexpr Long severalLines = 1200;
constexpr Long labelDrop = 45;     ///< By which a label stands lower than its field, so that their texts are level.
constexpr Long narrowest = 600;
constexpr Long widest = 4800;
constexpr Long buttonWidth = 1300;
constexpr Long buttonHeight = 390;

void place(Control& control, Long left, Long top, Long width, Long height)
{
    control.Left = left;
    control.Top = top;
    control.Width = width;
    control.Height = height;
}

/// Room for a text with a sign behind it.
Long textWidth(const String& text) { return (static_cast<Long>(text.size()) + 3) * character; }

} // namespace

Layout& Layout::row(Label& label, Control& field)
{
    lines_.push_back({&label, &field});
    return *this;
}

Layout& Layout::line(std::initializer_list<Control*> controls)
{
    for (Control* control : controls)
        lines_.push_back({nullptr, control});
    return *this;
}

Long Layout::labelColumn() const
{
    Long width = 0;
    for (const Line& line : lines_)
        if (line.label != nullptr)
            width = std::max(width, textWidth(line.label->Caption()));
    return width;
}

Long Layout::fieldWidth(const Control& field)
{
    const auto* text = dynamic_cast<const TextBox*>(&field);
    if (text == nullptr || text->MaxLength() == 0)
        return widest;
    return std::clamp((text->MaxLength() + 2) * character, narrowest, widest);
}

Long Layout::fieldHeight(const Control& field)
{
    const auto* text = dynamic_cast<const TextBox*>(&field);
    return text != nullptr && text->MultiLine() ? severalLines : lineHeight;
}

void Layout::buttons(CommandButton& accept, CommandButton& cancel)
{
    const Long fieldLeft = margin + labelColumn();
    Long top = margin;
    const Long right = fieldLeft + widest;
    for (const Line& line : lines_) {
        const Long height = fieldHeight(*line.field);
        if (line.label != nullptr)
            place(*line.label, margin, top + labelDrop, labelColumn(), lineHeight - labelDrop);
        place(*line.field, fieldLeft, top, fieldWidth(*line.field), height);
        top += height + gap;
    }
    top += gap;
    place(cancel, right - buttonWidth, top, buttonWidth, buttonHeight);
    place(accept, right - 2 * buttonWidth - gap, top, buttonWidth, buttonHeight);
    accept.Default = true;
    cancel.Cancel = true;
    form_.Width = right + margin;
    form_.Height = top + buttonHeight + margin;
}

} // namespace zv
