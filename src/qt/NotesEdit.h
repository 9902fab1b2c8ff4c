#pragma once

#include <QLabel>
#include <QPlainTextEdit>

namespace zv {

/// A text of several lines. While it is written it tells at its right edge how many characters are left.
class NotesEdit final : public QPlainTextEdit {
public:
    explicit NotesEdit(QWidget* parent);
    /// Of so many at most; 0 for a text without a limit, which tells nothing.
    void tellLeft(int left, int most);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void tell(bool writing);
    void place();
    QLabel left_{this};
    QString told_;
};

} // namespace zv
