#include "win32/FormWindow.h"

#include "forms/Desktop.h"
#include "win32/Accessible.h"
#include "win32/DraftView.h"
#include "win32/GridView.h"
#include "win32/Help.h"
#include "win32/Message.h"

#include <algorithm>

namespace zv::win32 {

namespace {

constexpr Long margin = 240;
constexpr UINT laterMessage = WM_APP + 1;
constexpr UINT_PTR minuteTimer = 1;
constexpr UINT minute = 60'000;
constexpr DWORD windowStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;

/// What the line under the form stands on.
class Foot final : public Window {
public:
    explicit Foot(HWND parent) : Window(WC_STATICW, childStyle | WS_VISIBLE | WS_CLIPCHILDREN, 0, parent) {}

private:
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override
    {
        return message == WM_CTLCOLORSTATIC ? onGround(number) : Window::receive(message, number, data);
    }
};

} // namespace

FormWindow::FormWindow(Form& form, HWND owner, Zoom* zoom)
    : Window(ourClass(), windowStyle, WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, owner), FormView(form),
      owner_(owner), zoom_(zoom), section_(form)
{
    if (!form.Icon.file.empty())
        icon_ = static_cast<HICON>(
            LoadImageW(nullptr, wide(form.Icon.file), IMAGE_ICON, 0, 0, LR_LOADFROMFILE | LR_DEFAULTSIZE));
    if (icon_ != nullptr)
        send(handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon_));
    if (zoom_ != nullptr) {
        offerMore();
        bar_.emplace(*this, handle());
    }
    if (hasLine()) {
        foot_ = std::make_unique<Foot>(handle());
        line_ = CreateWindowExW(0, WC_STATICW, L"", childStyle | WS_VISIBLE | SS_NOPREFIX | SS_ENDELLIPSIS, 0,
                                0, 0, 0, foot_->handle(), nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    const Naming naming;
    const Measuring measuring;
    build([this](Control& control, const ControlView* frame) {
        return makeView(*this, control, frame != nullptr ? frame->handle() : handle());
    });
    follow();
    // Where the focus is always shows: the acts move it, whoever acts.
    send(handle(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetTimer(handle(), minuteTimer, minute, nullptr);
}

FormWindow::~FormWindow()
{
    destroyViews();
    if (tips_ != nullptr)
        DestroyWindow(tips_);
    if (icon_ != nullptr)
        DestroyIcon(icon_);
}

RECT FormWindow::placeOf(const Control& control) const
{
    RECT place{pixels(control.Left()), pixels(control.Top()), pixels(control.Left() + control.Width()),
               pixels(control.Top() + control.Height())};
    if (control.frame() == nullptr)
        OffsetRect(&place, sheet_.origin().x, sheet_.origin().y);
    // Over its cell, which the window may have made wider than the model knows.
    if (const MSFlexGrid* under = this->under(control)) {
        const auto& grid = dynamic_cast<const GridView&>(viewOf(*under));
        place.top = placeOf(*under).top + below(*under, control);
        place.bottom = place.top + pixels(control.Height());
        if (const auto column = grid.currentColumn()) {
            place.left = placeOf(*under).left + column->first;
            place.right = place.left + column->second;
        }
    }
    return place;
}

int FormWindow::rowHeight() const
{
    return section_.grid == nullptr ? 0 : pixels(section_.grid->rowHeight());
}

Font FormWindow::fittingFont() const
{
    return Font(fittingLetters(scale_, [](int size) {
        const Font font(size);
        return LetterSize{font.height(), font.width(ordinaryLetters)};
    }));
}

double FormWindow::scaleWanted() const
{
    if (zoom_ == nullptr)
        return 1;
    const Scale natural(dotsOf(handle()));
    const SIZE room = sheet_.room(); // But for a pixel: parts of the window are rounded one by one.
    const Long foot = hasLine() ? footHeight : 0;
    return magnified(systemLetters(), static_cast<double>(room.cx - 1) / natural.pixels(form().Width()),
                     static_cast<double>(room.cy - 1) / natural.pixels(form().Height() + foot),
                     zoom_->percent());
}

void FormWindow::follow()
{
    const Deeper own = ownDoing();
    scale_ = Scale(dotsOf(handle()) * scaleWanted());
    font_ = fittingFont();
    followCaption();
    followEnabled();
    fit();
    followControls();
}

void FormWindow::fit()
{
    const bool barShown = bar_ && bar_->shown();
    const SIZE whole{pixels(form().Width()), pixels(form().Height())};
    const LONG least = barShown ? bar_->leastWidth() : 0;
    const LONG across = std::min(sheet_.room().cx, std::max(least, whole.cx));
    const int over = barShown ? bar_->settle(static_cast<int>(across)) : 0;
    const int under = line_ != nullptr ? pixels(footHeight) : 0;
    const LONG before = sheet_.origin().y;
    sheet_.fit(whole, over, under, static_cast<int>(least));
    RECT inside{};
    GetClientRect(handle(), &inside);
    if (barShown && inside.right != across)
        bar_->settle(inside.right);
    if (line_ != nullptr) {
        send(line_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.handle()), TRUE);
        MoveWindow(foot_->handle(), 0, inside.bottom - under, inside.right, under, TRUE);
        MoveWindow(line_, pixels(margin), 0, inside.right - 2 * pixels(margin), pixels(lineHeight), TRUE);
    }
    if (sheet_.origin().y != before)
        followSheet();
}

void FormWindow::followSheet()
{
    const Deeper own = ownDoing();
    for (const auto& view : views())
        if (view->control().frame() == nullptr)
            view->followPlace();
}

void FormWindow::moveTo(LONG x, LONG y, const RECT& work)
{
    RECT own{};
    GetWindowRect(handle(), &own);
    const auto inside = [](LONG at, LONG size, LONG from, LONG to) {
        return within(static_cast<int>(at), static_cast<int>(size), static_cast<int>(from),
                      static_cast<int>(to));
    };
    SetWindowPos(handle(), nullptr, inside(x, own.right - own.left, work.left, work.right),
                 inside(y, own.bottom - own.top, work.top, work.bottom), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWindow::centre()
{
    const RECT work = workAreaOf(owner_ != nullptr ? owner_ : handle());
    RECT around = work;
    if (owner_ != nullptr && IsIconic(owner_) == 0)
        GetWindowRect(owner_, &around);
    RECT own{};
    GetWindowRect(handle(), &own);
    moveTo((around.left + around.right - (own.right - own.left)) / 2,
           (around.top + around.bottom - (own.bottom - own.top)) / 2, work);
}

/// After the size has changed: not beyond the screen's edges.
void FormWindow::moveInside()
{
    RECT own{};
    GetWindowRect(handle(), &own);
    moveTo(own.left, own.top, workAreaOf(handle()));
}

void FormWindow::putUnder(ControlView& view)
{
    SetWindowPos(view.handle(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

/// Over the other controls; what stands around the sheet lies over all.
void FormWindow::putOver(ControlView& view)
{
    const HWND around = foot_ != nullptr ? foot_->handle() : bar_ ? bar_->handle() : HWND_TOP;
    SetWindowPos(view.handle(), view.control().frame() == nullptr ? around : HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void FormWindow::followFocus()
{
    const Control* active = form().ActiveControl();
    const HWND wanted = active != nullptr ? viewOf(*active).handle() : handle();
    if (GetActiveWindow() != handle() || GetFocus() == wanted)
        return;
    const Deeper own = ownDoing();
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
    return form().ActiveControl() == &view.control() && GetFocus() == view.handle();
}

void FormWindow::later(std::function<void()> what)
{
    later_.push_back(std::move(what));
    PostMessageW(handle(), laterMessage, 0, 0);
}

void FormWindow::runLater()
{
    while (alive() && !later_.empty()) {
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
    if (tips_ == nullptr)
        tips_ =
            CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                            0, 0, 0, 0, handle(), nullptr, GetModuleHandleW(nullptr), nullptr);
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
        showHelp(handle(), form().Name());
}

void FormWindow::show()
{
    centre();
    ShowWindow(handle(), SW_SHOW);
}

void FormWindow::end()
{
    detach();
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
    if (alive())
        followEnabled();
}

void FormWindow::disable(std::vector<HWND> others)
{
    disabled_ = std::move(others);
    for (const HWND other : disabled_)
        EnableWindow(other, FALSE);
}

void FormWindow::giveBack()
{
    for (const HWND other : std::exchange(disabled_, {}))
        EnableWindow(other, TRUE);
}

void FormWindow::followCaption() { SetWindowTextW(handle(), wide(form().Caption())); }

void FormWindow::followEnabled() { EnableWindow(handle(), form().Enabled() && !covered_); }

void FormWindow::showLine(const String& text) { SetWindowTextW(line_, wide(text)); }

void FormWindow::paintLine(const String& text)
{
    showLine(text);
    UpdateWindow(line_);
}

bool FormWindow::pressOwn(UINT message, WPARAM code)
{
    if (zoom_ == nullptr || busy() || !taken(message, code))
        return false;
    // What such a key types besides: a sign, or a letter at which the system would beep.
    MSG character{};
    for (const UINT typed : {WM_CHAR, WM_SYSCHAR})
        PeekMessageW(&character, nullptr, typed, typed, PM_REMOVE);
    return true;
}

bool FormWindow::taken(UINT message, WPARAM code)
{
    if (const auto change = zoomOf(code)) {
        zoom_->change(*change);
        follow();
        moveInside();
        if (!bar_->focused())
            followFocus();
        return true;
    }
    if (message == WM_SYSKEYDOWN && !held(VK_CONTROL) && bar_->press(code))
        return true;
    if (code == VK_F6 && bar_->shown()) {
        bar_->enter();
        return true;
    }
    return pressChord(chordOf(code), {});
}

void FormWindow::say(const String& text, const std::vector<BarChoice>& choices)
{
    if (!bar_ || !alive())
        return;
    const OwnControls ownControls;
    bar_->say(text, choices);
    fit();
    moveInside();
}

void FormWindow::sayNothing()
{
    if (!bar_ || !bar_->shown())
        return;
    bar_->hide();
    fit();
}

bool FormWindow::asks(const Question& question)
{
    const OwnControls ownControls;
    return askQuestion(handle(), question);
}

void FormWindow::showDraft(const String& heading, const std::vector<DraftRow>& rows)
{
    const OwnControls ownControls;
    win32::showDraft(handle(), font_, heading, rows);
    followEnabled();
}

LRESULT FormWindow::receive(UINT message, WPARAM number, LPARAM data)
{
    if (!alive())
        return inherited(message, number, data);
    switch (message) {
    case WM_CLOSE:
        closeForm();
        return 0;
    case WM_LBUTTONDOWN:
        if (!busy())
            act([this](Acts& acts) { return acts.clickBackground(form()); });
        return 0;
    case WM_KEYDOWN:
        if (pressOwn(message, number))
            return 0;
        // Where no control has the focus: Escape is then a person's way out.
        if (number == VK_F1)
            help();
        else if (number == VK_ESCAPE && form().ActiveControl() == nullptr)
            closeForm();
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
        if (form().MousePointer() != pointer::hourglass)
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
