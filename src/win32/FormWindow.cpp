#include "win32/FormWindow.h"

#include "forms/ComboBox.h"
#include "forms/Desktop.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "win32/GridView.h"
#include "win32/Help.h"

#include <algorithm>
#include <cmath>

namespace zv::win32 {

namespace {

constexpr int twipsPerInch = 1440;
/// Metrics that the forms assume, in twips: 105 for an ordinary letter, 315 for the height of a field.
constexpr StringView ordinaryLetters = u"abcdeghknopqsuvxyz";
constexpr Long letterWidth = 105;
constexpr Long lineHeight = 255;
constexpr Long largestFont = 180;
constexpr Long smallestFont = 140;
constexpr UINT laterMessage = WM_APP + 1;
constexpr UINT_PTR minuteTimer = 1;
constexpr UINT minute = 60'000;
constexpr DWORD windowStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;

} // namespace

FormWindow::FormWindow(Form& form, HWND owner, bool bare)
    : Window(ourClass(), windowStyle, WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, owner), form_(form),
      owner_(owner), bare_(bare), dots_(dotsOf(handle())), section_(form)
{
    tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                            0, 0, 0, 0, handle(), nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!form.Icon.file.empty())
        icon_ = static_cast<HICON>(
            LoadImageW(nullptr, wide(form.Icon.file), IMAGE_ICON, 0, 0, LR_LOADFROMFILE | LR_DEFAULTSIZE));
    if (icon_ != nullptr)
        send(handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon_));
    build();
    follow();
    // Where the focus is always shows: the acts move it, whoever acts.
    send(handle(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetTimer(handle(), minuteTimer, minute, nullptr);
}

FormWindow::~FormWindow()
{
    alive_ = false;
    // Destruction in reverse order: children before their frame.
    while (!views_.empty())
        views_.pop_back();
    if (tips_ != nullptr)
        DestroyWindow(tips_);
    if (icon_ != nullptr)
        DestroyIcon(icon_);
}

int FormWindow::pixels(Long twips) const
{
    return static_cast<int>(std::lround(static_cast<double>(twips) * dots_ / twipsPerInch));
}

Long FormWindow::twips(int pixels) const
{
    return static_cast<Long>(std::lround(static_cast<double>(pixels) * twipsPerInch / dots_));
}

RECT FormWindow::placeOf(const Control& control) const
{
    RECT place{pixels(control.Left()), pixels(control.Top()), pixels(control.Left() + control.Width()),
               pixels(control.Top() + control.Height())};
    if (control.frame() == nullptr)
        OffsetRect(&place, -sheet_.corner().x, -sheet_.corner().y);
    // Over its cell, which the window may have made wider than the model knows.
    if (!bare_ && &control == section_.floating && section_.grid != nullptr) {
        const auto& grid = dynamic_cast<const GridView&>(viewOf(*section_.grid));
        if (const auto column = grid.currentColumn()) {
            place.left = placeOf(*section_.grid).left + column->first;
            place.right = place.left + column->second;
        }
    }
    return place;
}

void FormWindow::columnsMoved()
{
    if (alive_ && !bare_ && section_.floating != nullptr && byControl_.contains(section_.floating))
        viewOf(*section_.floating).followPlace();
}

int FormWindow::rowHeight() const
{
    return section_.grid == nullptr ? 0 : pixels(section_.grid->rowHeight());
}

Font FormWindow::fittingFont() const
{
    const int most = pixels(letterWidth * static_cast<Long>(ordinaryLetters.size()));
    for (int size = pixels(largestFont); size > pixels(smallestFont); --size)
        if (Font font(size); font.height() <= pixels(lineHeight) && font.width(ordinaryLetters) <= most)
            return font;
    return Font(pixels(smallestFont));
}

void FormWindow::build()
{
    for (Control* control : form_.Controls) {
        const HWND parent = control->frame() != nullptr ? viewOf(*control->frame()).handle() : handle();
        views_.push_back(makeView(*this, *control, parent));
        byControl_[control] = views_.size() - 1;
    }
}

void FormWindow::follow()
{
    const Deeper own(busy_);
    dots_ = dotsOf(handle());
    font_ = fittingFont();
    SetWindowTextW(handle(), wide(form_.Caption()));
    followEnabled();
    fit();
    for (const auto& view : views_)
        view->followAll();
    for (const auto& view : views_)
        view->name();
    stack();
}

void FormWindow::fit() { sheet_.fit({pixels(form_.Width()), pixels(form_.Height())}); }

void FormWindow::centre()
{
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    GetMonitorInfoW(MonitorFromWindow(owner_ != nullptr ? owner_ : handle(), MONITOR_DEFAULTTONEAREST),
                    &screen);
    RECT around = screen.rcWork;
    if (owner_ != nullptr && IsIconic(owner_) == 0)
        GetWindowRect(owner_, &around);
    RECT own{};
    GetWindowRect(handle(), &own);
    const LONG width = own.right - own.left;
    const LONG height = own.bottom - own.top;
    const auto inside = [](LONG at, LONG size, LONG from, LONG to) {
        return std::clamp(at, from, std::max(from, to - size));
    };
    const RECT& work = screen.rcWork;
    SetWindowPos(handle(), nullptr,
                 inside((around.left + around.right - width) / 2, width, work.left, work.right),
                 inside((around.top + around.bottom - height) / 2, height, work.top, work.bottom), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWindow::stack()
{
    // Z order: tabs and grids lie under what stands in their place; what was brought to the front lies over
    // all. A window that is made later lies, here, under the others.
    constexpr UINT only = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    for (const auto& view : views_)
        if (dynamic_cast<GridView*>(view.get()) != nullptr)
            SetWindowPos(view->handle(), HWND_BOTTOM, 0, 0, 0, 0, only);
    for (const auto& view : views_)
        if (dynamic_cast<TabStrip*>(&view->control()) != nullptr)
            SetWindowPos(view->handle(), HWND_BOTTOM, 0, 0, 0, 0, only);
    stacked_ = form_.frontToBack();
    for (auto control = stacked_.rbegin(); control != stacked_.rend(); ++control)
        SetWindowPos(viewOf(**control).handle(), HWND_TOP, 0, 0, 0, 0, only);
}

bool FormWindow::act(const std::function<bool(Acts&)>& what)
{
    if (!alive_)
        return false;
    bool done = false;
    {
        const Deeper deeper(busy_);
        Acts acts;
        done = what(acts);
    }
    outcome_ = done;
    if (alive_ && !busy())
        inStep();
    return done;
}

void FormWindow::inStep()
{
    for (const auto& view : views_)
        view->flush();
    followFocus();
}

void FormWindow::followFocus()
{
    const Control* active = form_.ActiveControl();
    const HWND wanted = active != nullptr ? viewOf(*active).handle() : handle();
    if (GetActiveWindow() != handle() || GetFocus() == wanted)
        return;
    const Deeper own(busy_);
    SetFocus(wanted);
    if (active == nullptr)
        return;
    viewOf(*active).followAll();
    RECT seen{};
    GetWindowRect(wanted, &seen);
    MapWindowPoints(nullptr, handle(), reinterpret_cast<POINT*>(&seen), 2);
    sheet_.reveal(seen);
}

bool FormWindow::focused(const ControlView& view) const
{
    return form_.ActiveControl() == &view.control() && GetFocus() == view.handle();
}

void FormWindow::takeFocusOver(ControlView& view)
{
    if (busy() || GetFocus() != view.handle() || form_.ActiveControl() == &view.control())
        return;
    if (!view.control().takesFocus() || !act([&](Acts& acts) { return acts.focus(view.control()); }))
        followFocus();
}

void FormWindow::later(std::function<void()> what)
{
    later_.push_back(std::move(what));
    PostMessageW(handle(), laterMessage, 0, 0);
}

void FormWindow::runLater()
{
    while (alive_ && !later_.empty()) {
        const auto what = std::move(later_.front());
        later_.pop_front();
        what();
    }
}

void FormWindow::tip(HWND window, const String& text)
{
    String& last = tipTexts_[window];
    if (last == text)
        return;
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = handle();
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    if (!last.empty())
        send(tips_, TTM_DELTOOLW, 0, &tool);
    last = text;
    tool.lpszText = reinterpret_cast<wchar_t*>(last.data());
    if (!last.empty())
        send(tips_, TTM_ADDTOOLW, 0, &tool);
}

void FormWindow::help()
{
    if (!busy())
        showHelp(handle(), form_.Name());
}

void FormWindow::show()
{
    centre();
    ShowWindow(handle(), SW_SHOW);
}

void FormWindow::end()
{
    alive_ = false;
    KillTimer(handle(), minuteTimer);
    ShowWindow(handle(), SW_HIDE);
    // One that was disabled while it saved is no longer the active one, and hands the keyboard to nobody.
    const HWND active = GetActiveWindow();
    if ((active == nullptr || active == handle()) && IsWindowVisible(owner_) != 0)
        SetActiveWindow(owner_);
}

void FormWindow::cover(bool covered)
{
    covered_ = covered;
    if (alive_)
        followEnabled();
}

void FormWindow::followEnabled() { EnableWindow(handle(), form_.Enabled() && !covered_); }

void FormWindow::changed(const PropertyBase& property)
{
    if (&property == &form_.Caption)
        SetWindowTextW(handle(), wide(form_.Caption()));
    else if (&property == &form_.Enabled)
        followEnabled();
    else if (&property == &form_.Width || &property == &form_.Height)
        fit();
}

void FormWindow::controlChanged(Control& control, const PropertyBase* property)
{
    viewOf(control).changed(property);
    if (property == nullptr && stacked_ != form_.frontToBack())
        stack();
}

void FormWindow::ready()
{
    busy_ = 0;
    inStep();
}

void FormWindow::close()
{
    if (!busy())
        act([this](Acts& acts) { return acts.close(form_); });
}

LRESULT FormWindow::receive(UINT message, WPARAM number, LPARAM data)
{
    if (!alive_)
        return inherited(message, number, data);
    switch (message) {
    case WM_CLOSE:
        close();
        return 0;
    case WM_LBUTTONDOWN:
        if (!busy())
            act([this](Acts& acts) { return acts.clickBackground(form_); });
        return 0;
    case WM_KEYDOWN:
        // Where no control has the focus: Escape is then a person's way out.
        if (number == VK_F1)
            help();
        else if (number == VK_ESCAPE && form_.ActiveControl() == nullptr)
            close();
        return 0;
    case WM_HSCROLL:
    case WM_VSCROLL:
        sheet_.scroll(message == WM_HSCROLL ? SB_HORZ : SB_VERT, number);
        return 0;
    case WM_MOUSEWHEEL:
        sheet_.turn(number);
        return 0;
    case WM_SETFOCUS:
        followFocus();
        return 0;
    case WM_TIMER:
        if (number == minuteTimer && !busy())
            waiting();
        return 0;
    case laterMessage:
        runLater();
        return 0;
    case WM_MEASUREITEM:
        reinterpret_cast<MEASUREITEMSTRUCT*>(data)->itemHeight = static_cast<UINT>(rowHeight());
        return TRUE;
    case WM_SETCURSOR:
        if (form_.MousePointer() != pointer::hourglass)
            break;
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        return TRUE;
    case WM_DPICHANGED: {
        const RECT& wanted = *reinterpret_cast<const RECT*>(data);
        SetWindowPos(handle(), nullptr, wanted.left, wanted.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        follow();
        return 0;
    }
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
        follow();
        break;
    default:
        break;
    }
    return Window::receive(message, number, data);
}

} // namespace zv::win32
