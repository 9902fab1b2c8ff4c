#pragma once

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QPushButton>

#include <functional>
#include <vector>

namespace zv {

/// Bar over what a window shows: something that a person has to know, and buttons for what can be done about
/// it. Each button has its key on it, which presses it from anywhere in the window.
class Bar final : public QFrame {
public:
    explicit Bar(const QString& name, QWidget* parent = nullptr);

    struct Choice {
        QString text;
        Qt::Key key; ///< With Alt.
        std::function<void()> does;
    };
    /// Says it in the place of what was said before; screen readers are told. The window has the size of the
    /// bar to follow.
    void say(const QString& text, const std::vector<Choice>& choices);
    /// Gives its first button the focus; false where there is none.
    bool enter();
    /// Lays it out for a width, the buttons beside the text or under it, and gives the height that it needs.
    int settle(int width);
    /// Width that the buttons need.
    int leastWidth() const;

private:
    QBoxLayout parts_;
    QLabel text_;
    QHBoxLayout row_;
    std::vector<QPushButton*> buttons_;
};

} // namespace zv
