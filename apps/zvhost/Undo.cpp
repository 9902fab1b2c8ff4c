#include "zvhost/Undo.h"

#include <QAccessible>

namespace zv::host {

Undo::Undo(std::function<void()> changed) : changed_(std::move(changed))
{
    setObjectName(QStringLiteral("hecho"));
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    // Long names do not widen the window.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(this, &QLabel::linkActivated, this, [this] {
        // A copy: what it does may tell something else.
        if (const std::function<void()> follows = follows_)
            follows();
    });
    setFocusPolicy(Qt::NoFocus);
}

void Undo::did(const QString& text, std::function<void()> back)
{
    steps_.push_back(std::move(back));
    tell(text, QStringLiteral("Deshacer"), [this] { undo(); });
    setText(this->text() + QStringLiteral(" (Ctrl+Z)"));
    changed_();
}

void Undo::tell(const QString& text, const QString& link, std::function<void()> follows)
{
    follows_ = std::move(follows);
    QString line = text.toHtmlEscaped();
    if (!link.isEmpty())
        // In the colour of the text: links are too dark in some dark palettes.
        line += QStringLiteral(" · <a href=\"#\" style=\"color: %2\">%1</a>")
                    .arg(link.toHtmlEscaped(), palette().color(QPalette::WindowText).name());
    setText(line);
    setToolTip(text);
    setFocusPolicy(link.isEmpty() ? Qt::NoFocus : Qt::StrongFocus);
    QAccessibleEvent told(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

void Undo::undo()
{
    if (steps_.empty())
        return;
    const std::function<void()> back = std::move(steps_.back());
    steps_.pop_back();
    clear();
    setFocusPolicy(Qt::NoFocus);
    back();
    changed_();
}

void Undo::forget()
{
    steps_.clear();
    follows_ = nullptr;
    clear();
    setToolTip({});
    setFocusPolicy(Qt::NoFocus);
    changed_();
}

} // namespace zv::host
