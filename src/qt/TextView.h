#pragma once

#include "qt/ControlView.h"
#include "qt/NotesEdit.h"
#include "qt/QtText.h"
#include "views/ViewRules.h"

#include <QLineEdit>

namespace zv {

/// View of a text box. Typed characters go through the acts one by one; what the widget edits by itself
/// (input method, undo, drag and drop) is taken over as one paste.
class TextView : public ControlView {
public:
    explicit TextView(ViewSite& window) : ControlView(window) {}
    virtual TextBox& box() const = 0;

protected:
    struct Selection {
        qsizetype start = 0;
        qsizetype length = 0;
        bool operator==(const Selection&) const = default;
    };
    virtual QString text() const = 0;
    virtual Selection selection() const = 0;
    virtual qsizetype caret() const = 0;
    virtual void select(Selection selection) = 0;
    virtual void insert(const QString& text) = 0;
    /// Empties the undo stack.
    virtual void forgetEdits() = 0;
    virtual bool canDo(QKeySequence::StandardKey edit) const = 0;
    virtual void doEdit(QKeySequence::StandardKey edit) = 0;
    /// Slot for the widget's signals: text, caret or selection changed.
    void widgetChanged();

    void followContent() override;
    bool press(const Keystroke& key) override;
    bool handle(QObject& watched, QEvent& event) override;

private:
    static Selection placeOf(const TextChange& change);
    bool focused() const;
    void takeOver();
    void takeTextOver();
    void paste();
    void offerEdits(const QPoint& where);
    bool commit(QEvent& event);
    bool following_ = false; ///< Re-entrancy flag: the widget is being changed from the model.
    bool taking_ = false;    ///< Re-entrancy flag: the model is being changed from the widget.
    /// What changes comes of this box's own keys; all else is another row's or pupil's text.
    bool own_ = false;
    bool pending_ = false; ///< A change of the widget waits for takeOver().
};

class LineView final : public TextView {
public:
    LineView(ViewSite& window, TextBox& box, QWidget& parent);
    TextBox& control() const override { return box_; }
    TextBox& box() const override { return box_; }
    QLineEdit& widget() const override { return *edit_; }

protected:
    QString text() const override { return edit_->text(); }
    Selection selection() const override;
    qsizetype caret() const override { return edit_->cursorPosition(); }
    void select(Selection selection) override;
    void insert(const QString& text) override;
    void forgetEdits() override;
    bool canDo(QKeySequence::StandardKey edit) const override;
    void doEdit(QKeySequence::StandardKey edit) override;

private:
    TextBox& box_;
    std::unique_ptr<QLineEdit> edit_;
};

class NotesView final : public TextView {
public:
    NotesView(ViewSite& window, TextBox& box, QWidget& parent);
    TextBox& control() const override { return box_; }
    TextBox& box() const override { return box_; }
    NotesEdit& widget() const override { return *edit_; }

protected:
    QString text() const override { return edit_->toPlainText(); }
    Selection selection() const override;
    qsizetype caret() const override { return edit_->textCursor().position(); }
    void select(Selection selection) override;
    void insert(const QString& text) override { edit_->insertPlainText(text); }
    void forgetEdits() override { edit_->document()->clearUndoRedoStacks(); }
    bool canDo(QKeySequence::StandardKey edit) const override;
    void doEdit(QKeySequence::StandardKey edit) override;
    void followContent() override;
    void describe(const QString& text) override { edit_->describe(text); }
    bool handle(QObject& watched, QEvent& event) override;

private:
    TextBox& box_;
    std::unique_ptr<NotesEdit> edit_;
};

} // namespace zv
