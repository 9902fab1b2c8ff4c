#include "qt/TextView.h"

#include "qt/EdgeStyle.h"
#include "qt/Legible.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>

#include <utility>

namespace zv {

namespace {

constexpr int beside = 2; ///< Of a line, in pixels: its text begins as far inside as that of a list.

/// Dispatch of an edit command to either edit widget.
template <class Edit>
void doEditOn(Edit& edit, QKeySequence::StandardKey key)
{
    switch (key) {
    case QKeySequence::Undo:
        return edit.undo();
    case QKeySequence::Redo:
        return edit.redo();
    case QKeySequence::Cut:
        return edit.cut();
    case QKeySequence::Copy:
        return edit.copy();
    default:
        return edit.selectAll();
    }
}

} // namespace

void TextView::followContent()
{
    if (taking_)
        return;
    const QScopedValueRollback following(following_, true);
    pending_ = false;
    const String& model = box().Text();
    const QString wanted = shown(model);
    const auto start = static_cast<std::size_t>(box().SelStart());
    const auto length = static_cast<std::size_t>(box().SelLength());
    const qsizetype caretWanted = shownPlace(model, start);
    const QString before = text();
    if (before != wanted) {
        const TextChange change =
            changeBetween(fromQt(before), fromQt(wanted), static_cast<std::size_t>(caretWanted));
        select(placeOf(change));
        insert(toQt(change.inserted)); // A replacement and not setText(), which would empty the undo stack.
        if (!own_)
            forgetEdits();
    }
    // Without the focus, no selection is shown.
    const Selection selected{caretWanted, shownPlace(model, start + length) - caretWanted};
    if (focused() && selection() != selected)
        select(selected);
}

TextView::Selection TextView::placeOf(const TextChange& change)
{
    return {static_cast<qsizetype>(change.start), static_cast<qsizetype>(change.removed)};
}

bool TextView::focused() const { return window().focusWidget() == &input(); }

void TextView::widgetChanged()
{
    if (!following_ && !taking_ && !std::exchange(pending_, true))
        later([this] { takeOver(); });
}

void TextView::takeOver()
{
    if (!std::exchange(pending_, false) || window().busy())
        return;
    const QScopedValueRollback own(own_, true);
    {
        const QScopedValueRollback taking(taking_, true);
        if (text() != shown(box().Text()))
            takeTextOver();
        const Selection selected = selection();
        const String& model = box().Text();
        const auto start = static_cast<Long>(placeOfShown(model, selected.start));
        const Long length = static_cast<Long>(placeOfShown(model, selected.start + selected.length)) - start;
        if (window().alive() && focused() && (start != box().SelStart() || length != box().SelLength()))
            act([&](Acts& acts) { return acts.select(box(), start, length); });
    }
    if (window().alive())
        followContent();
}

void TextView::takeTextOver()
{
    const String& model = box().Text();
    const TextChange change =
        changeBetween(fromQt(shown(model)), fromQt(text()), static_cast<std::size_t>(caret()));
    const Selection place = placeOf(change);
    const auto start = static_cast<Long>(placeOfShown(model, place.start));
    const Long length = static_cast<Long>(placeOfShown(model, place.start + place.length)) - start;
    act([&](Acts& acts) {
        return acts.select(box(), start, length) && acts.paste(box(), unshown(toQt(change.inserted)));
    });
}

void TextView::paste()
{
    const QString text = QApplication::clipboard()->text();
    const QScopedValueRollback own(own_, true);
    act([&](Acts& acts) { return acts.paste(box(), box().MultiLine() ? unshown(text) : fromQt(text)); });
}

bool TextView::press(const Keystroke& key)
{
    takeOver();
    {
        const QScopedValueRollback own(own_, true);
        ControlView::press(key);
    }
    // Up and Down belong to the widget: the model knows no lines.
    const Key* named = std::get_if<Key>(&key);
    return !window().alive() || named == nullptr || !(*named == Key::Up || *named == Key::Down);
}

bool TextView::commit(QEvent& event)
{
    const auto& method = dynamic_cast<QInputMethodEvent&>(event);
    const QString text = method.commitString();
    if (text.isEmpty() || method.replacementLength() != 0)
        return false;
    // Splits an input method's commit: the composing ends in the widget; the characters come in as typed
    // keys, through the box's own filters.
    QInputMethodEvent rest(method.preeditString(), method.attributes());
    QApplication::sendEvent(&input(), &rest);
    takeOver();
    const QScopedValueRollback own(own_, true);
    act([&](Acts& acts) { return acts.type(box(), fromQt(text)); });
    return true;
}

bool TextView::handle(QObject&, QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        return !act([this](Acts& acts) { return acts.focus(box()); }) || !window().alive();
    case QEvent::InputMethod:
        return commit(event);
    case QEvent::KeyPress:
        if (!dynamic_cast<QKeyEvent&>(event).matches(QKeySequence::Paste))
            return false;
        takeOver();
        paste();
        return true;
    case QEvent::ContextMenu:
        offerEdits(dynamic_cast<QContextMenuEvent&>(event).globalPos());
        return true;
    default:
        return false;
    }
}

void TextView::offerEdits(const QPoint& where)
{
    struct Edit {
        const char* caption;
        QKeySequence::StandardKey key;
    };
    constexpr Edit edits[] = {
        {"&Deshacer", QKeySequence::Undo}, {"&Rehacer", QKeySequence::Redo},
        {"Cor&tar", QKeySequence::Cut},    {"&Copiar", QKeySequence::Copy},
        {"&Pegar", QKeySequence::Paste},   {"&Seleccionar todo", QKeySequence::SelectAll},
    };
    QMenu menu(&widget());
    keepLegible(menu);
    for (const Edit& edit : edits) {
        QAction* action = menu.addAction(QString::fromUtf8(edit.caption));
        action->setShortcut(edit.key);
        action->setEnabled(edit.key == QKeySequence::Paste ? !QApplication::clipboard()->text().isEmpty()
                                                           : canDo(edit.key));
        action->setData(edit.key);
    }
    const QAction* chosen = menu.exec(where);
    if (chosen == nullptr || !window().alive())
        return;
    const auto key = static_cast<QKeySequence::StandardKey>(chosen->data().toInt());
    key == QKeySequence::Paste ? paste() : doEdit(key);
}

LineView::LineView(ViewSite& window, TextBox& box, QWidget& parent)
    : TextView(window), box_(box), edit_(std::make_unique<QLineEdit>(&parent))
{
    watch();
    drawEdge(*edit_);
    edit_->setTextMargins(beside, 0, beside, 0);
    edit_->setAlignment(box.RightAligned() ? Qt::AlignRight : Qt::AlignLeft);
    connect(edit_.get(), &QLineEdit::textChanged, this, [this] { widgetChanged(); });
    connect(edit_.get(), &QLineEdit::selectionChanged, this, [this] { widgetChanged(); });
    connect(edit_.get(), &QLineEdit::cursorPositionChanged, this, [this] { widgetChanged(); });
}

TextView::Selection LineView::selection() const
{
    if (!edit_->hasSelectedText())
        return {edit_->cursorPosition(), 0};
    return {edit_->selectionStart(), edit_->selectionLength()};
}

void LineView::select(Selection selection)
{
    edit_->deselect();
    if (selection.length == 0)
        edit_->setCursorPosition(static_cast<int>(selection.start));
    else
        edit_->setSelection(static_cast<int>(selection.start), static_cast<int>(selection.length));
}

void LineView::insert(const QString& text) { text.isEmpty() ? edit_->del() : edit_->insert(text); }

void LineView::forgetEdits()
{
    const int caret = edit_->cursorPosition();
    edit_->setText(edit_->text());
    edit_->setCursorPosition(caret);
}

bool LineView::canDo(QKeySequence::StandardKey edit) const
{
    switch (edit) {
    case QKeySequence::Undo:
        return edit_->isUndoAvailable();
    case QKeySequence::Redo:
        return edit_->isRedoAvailable();
    case QKeySequence::SelectAll:
        return !edit_->text().isEmpty();
    default:
        return edit_->hasSelectedText();
    }
}

void LineView::doEdit(QKeySequence::StandardKey edit) { doEditOn(*edit_, edit); }

NotesView::NotesView(ViewSite& window, TextBox& box, QWidget& parent)
    : TextView(window), box_(box), edit_(std::make_unique<NotesEdit>(&parent))
{
    watch();
    drawEdge(*edit_);
    edit_->setTabChangesFocus(true);
    edit_->viewport()->installEventFilter(this);
    connect(edit_.get(), &QPlainTextEdit::textChanged, this, [this] { widgetChanged(); });
    connect(edit_.get(), &QPlainTextEdit::selectionChanged, this, [this] { widgetChanged(); });
    connect(edit_.get(), &QPlainTextEdit::cursorPositionChanged, this, [this] { widgetChanged(); });
}

void NotesView::followContent()
{
    TextView::followContent();
    edit_->tellLeft(box_.MaxLength() - static_cast<int>(box_.Text().size()), box_.MaxLength());
}

TextView::Selection NotesView::selection() const
{
    const QTextCursor cursor = edit_->textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
}

void NotesView::select(Selection selection)
{
    QTextCursor cursor = edit_->textCursor();
    cursor.setPosition(static_cast<int>(selection.start));
    cursor.setPosition(static_cast<int>(selection.start + selection.length), QTextCursor::KeepAnchor);
    edit_->setTextCursor(cursor);
}

bool NotesView::canDo(QKeySequence::StandardKey edit) const
{
    switch (edit) {
    case QKeySequence::Undo:
        return edit_->document()->isUndoAvailable();
    case QKeySequence::Redo:
        return edit_->document()->isRedoAvailable();
    case QKeySequence::SelectAll:
        return !edit_->document()->isEmpty();
    default:
        return edit_->textCursor().hasSelection();
    }
}

void NotesView::doEdit(QKeySequence::StandardKey edit) { doEditOn(*edit_, edit); }

bool NotesView::handle(QObject& watched, QEvent& event)
{
    // Duplicate event: the viewport passes its mouse presses on to the edit.
    if (&watched == edit_.get() && event.type() == QEvent::MouseButtonPress)
        return false;
    return TextView::handle(watched, event);
}

} // namespace zv
