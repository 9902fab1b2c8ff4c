#include "qt/NotesEdit.h"

#include "qt/QtText.h"
#include "views/ViewRules.h"

namespace zv {

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
    said_ = most == 0 ? QString() : toQt(leftInWords(left));
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
