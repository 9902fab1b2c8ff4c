#pragma once

#include "views/WindowAids.h"
#include "win32/ControlView.h"

#include <memory>
#include <vector>

namespace zv::win32 {

/// Bar over what a window shows: something that a person has to know, and buttons for what can be done about
/// it. Each button has its key on it, which presses it from anywhere in the window.
class Bar final : public Window {
public:
    Bar(ViewSite& site, HWND parent);
    ~Bar() override;

    /// Says it in the place of what was said before; screen readers are told. The window has the size of the
    /// bar to follow.
    void say(const String& text, const std::vector<BarChoice>& choices);
    void hide();
    bool shown() const { return !buttons_.empty(); }
    /// Whether the keyboard is in it.
    bool focused() const;
    /// Gives its first button the focus.
    void enter() const;
    /// Presses the button of that letter; false if there is none.
    bool press(WPARAM letter);
    /// Lays it out for a width, the buttons beside the text or under it, and gives the height that it needs.
    int settle(int width);
    /// Width that the buttons need.
    int leastWidth() const;

protected:
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    class Button;
    int margin() const { return site_.font().height() / 2; }
    void step(const Button& from, int by) const;
    ViewSite& site_;
    HWND text_;
    String said_;
    std::vector<std::unique_ptr<Button>> buttons_;
    /// What was pressed may be one of them: they go when the message in hand has ended.
    std::vector<std::unique_ptr<Button>> gone_;
};

} // namespace zv::win32
