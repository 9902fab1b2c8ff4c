#include "zvhost/Notice.h"

#include <QAccessible>
#include <QAction>
#include <QHBoxLayout>

#include <algorithm>

namespace zv::host {

Notice::Notice()
{
    setObjectName(QStringLiteral("aviso"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    text_.setObjectName(QStringLiteral("avisoTexto"));
    text_.setForegroundRole(QPalette::ToolTipText);
    text_.setWordWrap(true);
    text_.setTextFormat(Qt::PlainText);
    auto* parts = std::make_unique<QHBoxLayout>(this).release();
    parts->addWidget(&text_, 1);
    for (QPushButton* each : {&show_, &give_, &join_, &done_})
        parts->addWidget(each);
    // Copies: what they do may tell something else.
    button(show_, QStringLiteral("Ver"), Qt::Key_R, [this] {
        const auto shows = waiting_.front().shows;
        shows();
    });
    button(give_, QStringLiteral("Devolver"), Qt::Key_D, [this] {
        const auto gives = waiting_.front().gives;
        gives();
    });
    button(join_, QStringLiteral("Unir"), Qt::Key_U, [this] {
        const auto joins = waiting_.front().joins;
        joins();
    });
    button(done_, QStringLiteral("Entendido"), Qt::Key_E, [this] { next(); });
    hide();
}

/// An action: a button's own key presses it for a moment first, and does it after.
void Notice::button(QPushButton& button, const QString& text, int key, const std::function<void()>& does)
{
    const QKeySequence keys(Qt::ALT | Qt::Key(key));
    button.setText(text + QStringLiteral(" (%1)").arg(keys.toString(QKeySequence::NativeText)));
    QAction* action = button.addAction(text);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, does);
    connect(&button, &QPushButton::clicked, this, does);
}

void Notice::tell(Message message)
{
    if (!message.foretells)
        std::erase_if(waiting_, [](const Message& each) { return each.foretells; });
    waiting_.push_back(std::move(message));
    follow();
}

void Notice::next()
{
    if (!waiting_.empty())
        waiting_.erase(waiting_.begin());
    follow();
}

void Notice::forget()
{
    waiting_.clear();
    follow();
}

void Notice::forget(const std::vector<Long>& openings)
{
    std::erase_if(waiting_, [&](const Message& each) {
        return std::ranges::find_first_of(each.openings, openings) != each.openings.end();
    });
    follow();
}

void Notice::follow()
{
    setVisible(!waiting_.empty());
    if (waiting_.empty())
        return;
    text_.setText(waiting_.front().text);
    give_.setVisible(waiting_.front().gives != nullptr);
    join_.setVisible(waiting_.front().joins != nullptr);
    QAccessibleEvent told(&text_, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

} // namespace zv::host
