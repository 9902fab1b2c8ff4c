#pragma once

#include <QLabel>
#include <QPlainTextEdit>

namespace zv {

/// Multi-line edit with a countdown: while it has the focus, its right edge shows how many characters are
/// left.
class NotesEdit final : public QPlainTextEdit {
public:
    explicit NotesEdit(QWidget* parent);
    /// Sets the countdown: `left` of `most` characters; a `most` of 0 means no limit, and shows nothing.
    void tellLeft(int left, int most);
    /// Sets what a screen reader adds to the name, before how much is left. That changes, and is said, near
    /// the end only: not at each letter.
    void describe(const QString& text);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void tell(bool writing);
    void place();
    QLabel left_{this};
    QString told_;
    QString description_;
    QString said_; ///< How much is left, in words.
};

} // namespace zv
