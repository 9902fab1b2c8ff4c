#include "qt/MessageAid.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "qt/FormWindow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>

#include <algorithm>

namespace zv {

namespace {

/// Tint of what is missing, and its share in the field's own colour: letters stay legible on it.
constexpr QColor missing(200, 60, 40);
constexpr double share = 0.2;
constexpr const char* tinted = "zvTinted";

bool isEmpty(const Control& control)
{
    if (const auto* box = dynamic_cast<const TextBox*>(&control))
        return box->Text().empty();
    const auto* list = dynamic_cast<const ComboBox*>(&control);
    return list != nullptr && list->ListIndex() < 0;
}

QColor mixed(const QColor& ground)
{
    const auto mix = [](int own, int other) {
        return static_cast<int>(std::lround(own * (1 - share) + other * share));
    };
    return {mix(ground.red(), missing.red()), mix(ground.green(), missing.green()),
            mix(ground.blue(), missing.blue())};
}

void tint(QWidget& widget)
{
    const QPalette before = widget.palette();
    QPalette palette = before;
    // A list without typing is drawn as a button.
    for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Button})
        palette.setColor(role, mixed(before.color(role)));
    widget.setPalette(palette);
    widget.setProperty(tinted, true);
    auto* watch = std::make_unique<QObject>(&widget).release();
    const auto filled = [&widget, before, watch] {
        widget.setPalette(before);
        widget.setProperty(tinted, false);
        watch->deleteLater();
    };
    if (auto* line = qobject_cast<QLineEdit*>(&widget))
        QObject::connect(line, &QLineEdit::textChanged, watch, filled);
    else if (auto* notes = qobject_cast<QPlainTextEdit*>(&widget))
        QObject::connect(notes, &QPlainTextEdit::textChanged, watch, filled);
    else if (auto* list = qobject_cast<QComboBox*>(&widget))
        QObject::connect(list, &QComboBox::currentTextChanged, watch, filled);
}

} // namespace

void placeBeside(QWidget& box, const QWidget& window)
{
    box.ensurePolished();
    const QRect taken = window.frameGeometry();
    const QRect room = window.screen()->availableGeometry();
    const int gap = window.fontMetrics().height() / 2;
    // The frame that the desktop puts around the box is as thick as that around the window.
    const QSize size =
        box.sizeHint().grownBy({0, 0, gap, gap}) + (window.frameGeometry().size() - window.geometry().size());
    const int centred = std::clamp(taken.center().x() - size.width() / 2, room.left(),
                                   std::max(room.left(), room.right() - size.width()));
    const int level = std::clamp(taken.center().y() - size.height() / 2, room.top(),
                                 std::max(room.top(), room.bottom() - size.height()));
    const QPoint places[] = {{centred, taken.bottom() + gap},
                             {taken.right() + gap, level},
                             {taken.left() - gap - size.width(), level},
                             {centred, taken.top() - gap - size.height()}};
    const auto* free =
        std::ranges::find_if(places, [&](const QPoint& place) { return room.contains(QRect(place, size)); });
    box.move(free != std::end(places) ? *free
                                      : QPoint(room.right() - size.width(), room.bottom() - size.height()));
}

void tintEmpty(FormWindow& window)
{
    if (!window.alive())
        return;
    for (Control* each : window.form().Controls) {
        const auto* label = dynamic_cast<const Label*>(each->label());
        if (label == nullptr || !label->Obligatorio() || !isEmpty(*each))
            continue;
        if (QWidget& input = window.viewOf(*each).input(); !input.property(tinted).toBool())
            tint(input);
    }
}

} // namespace zv
