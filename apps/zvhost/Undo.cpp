#include "zvhost/Undo.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>
#include <QTextDocumentFragment>

namespace zv::host {
namespace {

/// Accessible of the line: a link as long as there is something to follow, and a text otherwise.
class Heard final : public QAccessibleWidget {
public:
    explicit Heard(Undo& line) : QAccessibleWidget(&line), line_(line) {}
    QAccessible::Role role() const override
    {
        return follows() ? QAccessible::Link : QAccessible::StaticText;
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? QTextDocumentFragment::fromHtml(line_.text()).toPlainText()
                                         : QAccessibleWidget::text(kind);
    }
    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (follows())
            names.prepend(pressAction());
        return names;
    }
    void doAction(const QString& name) override
    {
        // Later: what is followed may open a window, and a screen reader waits for its answer.
        if (name == pressAction())
            QMetaObject::invokeMethod(
                &line_, [&line = line_] { line.followLink(); }, Qt::QueuedConnection);
        else
            QAccessibleWidget::doAction(name);
    }

private:
    bool follows() const { return line_.focusPolicy() != Qt::NoFocus; }
    Undo& line_;
};

QAccessibleInterface* heard(const QString&, QObject* object)
{
    auto* line = dynamic_cast<Undo*>(object);
    return line == nullptr ? nullptr : std::make_unique<Heard>(*line).release();
}

} // namespace

Undo::Undo(std::function<void()> changed) : changed_(std::move(changed))
{
    QAccessible::installFactory(heard); // Once, however many lines there are.
    setObjectName(QStringLiteral("hecho"));
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse);
    // Long names do not widen the window.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(this, &QLabel::linkActivated, this, [this] { followLink(); });
    setFocusPolicy(Qt::NoFocus);
}

void Undo::followLink()
{
    // A copy: what it does may tell something else.
    if (const std::function<void()> follows = follows_)
        follows();
}

void Undo::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        followLink();
    else
        QLabel::keyPressEvent(event);
}

void Undo::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

/// In the colour of the text: links are too dark in some dark palettes.
void Undo::colorLink()
{
    const QString color = palette().color(QPalette::WindowText).name();
    setText(
        QString(said_).replace(QStringLiteral("<a "), QStringLiteral("<a style=\"color: %1\" ").arg(color)));
}

void Undo::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !text().isEmpty())
        colorLink();
}

void Undo::did(const QString& text, std::function<void()> back)
{
    steps_.push_back(std::move(back));
    tell(text, QStringLiteral("Deshacer"), [this] { undo(); });
    said_ += QStringLiteral(" (Ctrl+Z)");
    colorLink();
    changed_();
}

void Undo::tell(const QString& text, const QString& link, std::function<void()> follows)
{
    follows_ = std::move(follows);
    said_ = text.toHtmlEscaped();
    if (!link.isEmpty())
        said_ += QStringLiteral(" · <a href=\"#\">%1</a>").arg(link.toHtmlEscaped());
    colorLink();
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
    follows_ = nullptr;
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
