#include "qt/NotesEdit.h"

namespace zv {

namespace {

/// Roughly, while there is much; to the letter at the end.
QString leftInWords(int left)
{
    for (const int mark : {50, 20, 10})
        if (left > mark)
            return QStringLiteral("Quedan más de %1 caracteres").arg(mark);
    return left == 0   ? QStringLiteral("No caben más caracteres")
           : left == 1 ? QStringLiteral("Queda 1 carácter")
                       : QStringLiteral("Quedan %1 caracteres").arg(left);
}

} // namespace

NotesEdit::NotesEdit(QWidget* parent) : QPlainTextEdit(parent)
{
    left_.setBackgroundRole(QPalette::Base);
    left_.setForegroundRole(QPalette::PlaceholderText);
    left_.setAutoFillBackground(true);
    left_.setAlignment(Qt::AlignRight | Qt::AlignBottom);
    left_.setContentsMargins(0, 0, 3, 1);
    left_.setToolTip(QStringLiteral("Caracteres que quedan"));
}

void NotesEdit::tellLeft(int left, int most)
{
    // Reserves the margin of the widest number from the start, so that no line is re-wrapped while one
    // writes.
    const int room = most == 0 ? 0 : fontMetrics().horizontalAdvance(QString::number(most) + u' ');
    if (viewportMargins().right() != room)
        setViewportMargins(0, 0, room, 0);
    told_ = most == 0 ? QString() : QString::number(left);
    said_ = most == 0 ? QString() : leftInWords(left);
    describe(description_);
    tell(window()->focusWidget() == this);
    place();
}

void NotesEdit::describe(const QString& text)
{
    description_ = text;
    const QString both =
        text.isEmpty() || said_.isEmpty() ? text + said_ : text + QStringLiteral(". ") + said_;
    if (accessibleDescription() != both)
        setAccessibleDescription(both); // Which tells the screen reader.
}

void NotesEdit::tell(bool writing) { left_.setText(writing ? told_ : QString()); }

void NotesEdit::place()
{
    QRect margin = viewport()->geometry();
    margin.setLeft(margin.right() + 1);
    margin.setWidth(viewportMargins().right());
    left_.setGeometry(margin);
}

void NotesEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    place();
}

void NotesEdit::focusInEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusInEvent(event);
    tell(true);
}

void NotesEdit::focusOutEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusOutEvent(event);
    tell(false);
}

} // namespace zv
