#include "qt/Bar.h"

#include "qt/EdgeStyle.h"

#include <QAccessible>
#include <QAction>
#include <QKeySequence>

#include <algorithm>
#include <memory>
#include <utility>

namespace zv {

namespace {

/// Letters of the text that have to fit beside the buttons; else it stands over them.
constexpr int lettersBeside = 36;

} // namespace

Bar::Bar(const QString& name, QWidget* parent) : QFrame(parent), parts_(QBoxLayout::LeftToRight, this)
{
    setObjectName(name);
    text_.setObjectName(name + QStringLiteral("Texto"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    // A click on it is none on what lies under it.
    setAttribute(Qt::WA_NoMousePropagation);
    text_.setForegroundRole(QPalette::ToolTipText);
    text_.setWordWrap(true);
    text_.setTextFormat(Qt::PlainText);
    parts_.addWidget(&text_, 1);
    row_.addStretch();
    parts_.addLayout(&row_);
    hide();
}

void Bar::say(const QString& text, const std::vector<Choice>& choices)
{
    // Deferred: one of them may be what is pressed now.
    for (QPushButton* each : std::exchange(buttons_, {})) {
        each->hide();
        each->deleteLater();
    }
    text_.setText(text);
    for (const Choice& choice : choices) {
        const QKeySequence keys(Qt::ALT | choice.key);
        auto* button =
            std::make_unique<QPushButton>(
                choice.text + QStringLiteral(" (%1)").arg(keys.toString(QKeySequence::NativeText)), this)
                .release();
        button->setObjectName(objectName() + choice.text);
        button->setAutoDefault(false);
        giveRoom(*button);
        row_.addWidget(button);
        button->show();
        buttons_.push_back(button);
        // An action: a button's own key presses it for a moment first, and does it after.
        QAction* action = button->addAction(choice.text);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, choice.does);
        connect(button, &QPushButton::clicked, this, choice.does);
    }
    show();
    QAccessibleEvent told(&text_, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

bool Bar::enter()
{
    if (buttons_.empty())
        return false;
    buttons_.front()->setFocus(Qt::TabFocusReason);
    return true;
}

int Bar::leastWidth() const
{
    int width = 0;
    for (const QPushButton* each : buttons_)
        width += std::max(each->sizeHint().width(), each->minimumWidth()) + row_.spacing();
    const QMargins around = parts_.contentsMargins();
    return width + around.left() + around.right() + 2 * frameWidth();
}

int Bar::settle(int width)
{
    const int letters = text_.fontMetrics().averageCharWidth() *
                        std::min<int>(lettersBeside, static_cast<int>(text_.text().size()));
    parts_.setDirection(leastWidth() + parts_.spacing() + letters <= width ? QBoxLayout::LeftToRight
                                                                           : QBoxLayout::TopToBottom);
    return parts_.totalHeightForWidth(width);
}

} // namespace zv
