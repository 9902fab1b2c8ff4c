#include "win32/stage/Win32Stage.h"

#include "forms/ComboBox.h"
#include "forms/TabStrip.h"
#include "robot/WindowStage.h"
#include "win32/Clipboard.h"
#include "win32/GridView.h"
#include "win32/Win32Desktop.h"

#include <algorithm>
#include <array>

namespace zv::win32 {

namespace {

constexpr WPARAM pasteCommand = 0x16; ///< Control with V, as a character.

constexpr WPARAM keyCode(Key key)
{
    switch (key) {
    case Key::Enter:
        return VK_RETURN;
    case Key::Escape:
        return VK_ESCAPE;
    case Key::Tab:
    case Key::BackTab:
        return VK_TAB;
    case Key::Backspace:
        return VK_BACK;
    case Key::Delete:
        return VK_DELETE;
    case Key::Left:
        return VK_LEFT;
    case Key::Right:
        return VK_RIGHT;
    case Key::Up:
        return VK_UP;
    case Key::Down:
        return VK_DOWN;
    case Key::Home:
        return VK_HOME;
    case Key::End:
        return VK_END;
    }
    return 0;
}

/// RAII guard: Shift is held down, or not, for this thread; the other keys that go with letters are not.
class Shift {
public:
    explicit Shift(bool down)
    {
        GetKeyboardState(before_.data());
        std::array<BYTE, 256> now = before_;
        for (const int key : {VK_CONTROL, VK_LCONTROL, VK_RCONTROL, VK_MENU, VK_LMENU, VK_RMENU})
            now.at(static_cast<std::size_t>(key)) = 0;
        for (const int key : {VK_SHIFT, VK_LSHIFT, VK_RSHIFT})
            now.at(static_cast<std::size_t>(key)) = down ? 0x80 : 0;
        SetKeyboardState(now.data());
    }
    Shift(const Shift&) = delete;
    Shift& operator=(const Shift&) = delete;
    ~Shift() { SetKeyboardState(before_.data()); }

private:
    std::array<BYTE, 256> before_{};
};

void sendMouse(HWND window, POINT where, std::initializer_list<UINT> messages)
{
    const LPARAM place = MAKELPARAM(where.x, where.y);
    for (const UINT message : messages)
        if (IsWindow(window) != 0)
            send(window, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, place);
}

/// Hit test: whether the mouse would hit the window at that point of it.
bool hit(HWND window, POINT where)
{
    RECT inside{};
    GetClientRect(window, &inside);
    if (IsWindowVisible(window) == 0 || PtInRect(&inside, where) == 0)
        return false;
    HWND at = GetAncestor(window, GA_ROOT);
    constexpr UINT seen = CWP_SKIPINVISIBLE | CWP_SKIPTRANSPARENT;
    for (HWND under = nullptr; at != window; at = under) {
        POINT there = where;
        MapWindowPoints(window, at, &there, 1);
        under = ChildWindowFromPointEx(at, there, seen);
        if (under == nullptr || under == at)
            return false;
    }
    return true;
}

POINT middle(const RECT& area) { return {(area.left + area.right) / 2, (area.top + area.bottom) / 2}; }

class StageDesktop final : public Reporting<Win32Desktop> {
public:
    using Reporting::Reporting;
    void breathe() override
    {
        doEventsOnly();
        Window::rethrowHeld();
    }

protected:
    bool helps() const override { return false; }
    void shown(HWND box) override { PostMessageW(box, WM_CLOSE, 0, 0); }
    void runWindow(FormWindow& window) override
    {
        window.ready();
        breathe();
        goOn(window.form());
    }

private:
    static void doEventsOnly()
    {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0,
                            PM_REMOVE | PM_QS_PAINT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE) != 0)
            DispatchMessageW(&message);
    }
};

class RealPerson final : public WindowPerson<StageDesktop> {
public:
    using WindowPerson::WindowPerson;

    bool click(Control& control) override
    {
        const HWND window = handleOf(control);
        RECT inside{};
        GetClientRect(window, &inside);
        const bool button = dynamic_cast<CommandButton*>(&control) != nullptr;
        const POINT where{button ? inside.right / 2 : inside.bottom / 2, inside.bottom / 2};
        if (!hit(window, where) || IsWindowEnabled(window) == 0)
            return directly(control.form(), [&](Acts& acts) { return acts.click(control); });
        return really(control.form(), [&] { sendMouse(window, where, {WM_LBUTTONDOWN, WM_LBUTTONUP}); });
    }

    bool key(Control& control, Key key) override
    {
        return really(control.form(), [&] {
            const Shift shift(key == Key::BackTab);
            send(handleOf(control), WM_KEYDOWN, keyCode(key), 1);
        });
    }

    bool choose(ComboBox& box, Long index) override
    {
        const HWND list = handleOf(box);
        static_cast<void>(box.List(index));
        return really(box.form(), [&] {
            send(list, CB_SETCURSEL, static_cast<WPARAM>(index));
            for (const UINT notice : {CBN_SELENDOK, CBN_CLOSEUP})
                send(GetParent(list), WM_COMMAND, MAKEWPARAM(0, notice), reinterpret_cast<LPARAM>(list));
            windowOf(box.form())->runLater();
        });
    }

    bool clickCell(MSFlexGrid& grid, Long row, Long column) override
    {
        const int place = placeOf(grid, column);
        static_cast<void>(grid.TextMatrix(row, column));
        windowOf(grid.form())->inStep();
        auto& view = dynamic_cast<GridView&>(viewOf(grid));
        const RECT cell = view.cell(row, std::max(place, 0));
        POINT where = middle(cell);
        const HWND window = row == 0 ? view.heading() : view.handle();
        MapWindowPoints(view.handle(), window, &where, 1);
        if (place < 0 || IsRectEmpty(&cell) != 0 || !hit(window, where) || IsWindowEnabled(window) == 0)
            return directly(grid.form(), [&](Acts& acts) { return acts.clickCell(grid, row, column); });
        return really(grid.form(), [&] { sendMouse(window, where, {WM_LBUTTONDOWN, WM_LBUTTONUP}); });
    }

    bool doubleClickCell(MSFlexGrid& grid, Long row, Long column) override
    {
        if (!clickCell(grid, row, column) || !open(grid))
            return false;
        const HWND window = handleOf(grid);
        return really(grid.form(), [&] { sendMouse(window, {1, 1}, {WM_LBUTTONDBLCLK, WM_LBUTTONUP}); });
    }

    bool clickTab(TabStrip& strip, Long tab) override
    {
        static_cast<void>(strip.Tabs(tab));
        const HWND window = handleOf(strip);
        RECT place{};
        send(window, TCM_GETITEMRECT, static_cast<WPARAM>(tab) - 1, &place);
        if (!hit(window, middle(place)) || IsWindowEnabled(window) == 0)
            return directly(strip.form(), [&](Acts& acts) { return acts.clickTab(strip, tab); });
        return really(strip.form(), [&] {
            sendMouse(window, middle(place), {WM_LBUTTONDOWN, WM_LBUTTONUP});
        });
    }

    bool clickBackground(Form& form) override
    {
        return really(form, [&] {
            sendMouse(windowOf(form)->handle(), {1, 1}, {WM_LBUTTONDOWN, WM_LBUTTONUP});
        });
    }

    bool close(Form& form) override
    {
        return really(form, [&] { send(windowOf(form)->handle(), WM_CLOSE); });
    }

private:
    void character(Control& control, const String& text) override
    {
        for (const char16_t unit : text) {
            const Shift shift(false);
            send(handleOf(control), WM_CHAR, unit, 1);
        }
    }
    void fromClipboard(TextBox& box, StringView text) override
    {
        putOnClipboard(nullptr, text);
        send(handleOf(box), WM_CHAR, pasteCommand, 1);
    }
    HWND handleOf(const Control& control) const { return viewOf(control).handle(); }
};

} // namespace

Stage win32Stage(Play& play)
{
    auto desktop = std::make_unique<StageDesktop>(play);
    auto person = std::make_unique<RealPerson>(*desktop);
    return {std::move(desktop), std::move(person)};
}

} // namespace zv::win32
