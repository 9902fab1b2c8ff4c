#include "win32/ControlView.h"

#include "views/Names.h"
#include "win32/Accessible.h"

#include <utility>

namespace zv::win32 {

ControlView::ControlView(ViewSite& window, Control& control, const wchar_t* kind, DWORD style, DWORD extended,
                         HWND parent)
    : Window(kind, childStyle | style, extended, parent), ViewBase(window), window_(window), control_(control)
{}

void ControlView::followFont()
{
    send(handle(), WM_SETFONT, reinterpret_cast<WPARAM>(window_.font().handle()), TRUE);
}

void ControlView::followPlace()
{
    // A window that is hidden or disabled loses the focus, which is no person's doing.
    const Deeper own = window_.ownDoing();
    const RECT place = window_.placeOf(control_);
    const UINT shown = control_.Visible() ? SWP_SHOWWINDOW : SWP_HIDEWINDOW;
    SetWindowPos(handle(), nullptr, place.left, place.top, place.right - place.left, heightIn(place),
                 SWP_NOZORDER | SWP_NOACTIVATE | shown);
    EnableWindow(handle(), enabled());
    window_.tip(handle(), control_.ToolTipText());
}

bool ControlView::enabled() const
{
    const Control* outer = &control_;
    while (outer != nullptr && outer->Enabled())
        outer = outer->frame();
    return outer == nullptr;
}

void ControlView::show(const String& text)
{
    if (shown_ != text)
        SetWindowTextW(handle(), wide(shown_ = text));
}

void ControlView::name()
{
    const std::pair both(accessibleNameOf(control_), description());
    if (std::exchange(told_, both) != both)
        tellName(handle(), both.first, both.second);
}

String ControlView::description() const { return accessibleDescriptionOf(control_); }

void ControlView::press(const Keystroke& key) { pressKey(key); }

bool ControlView::keyed(UINT message, WPARAM number)
{
    flush();
    if (message == WM_CHAR) {
        const auto character = characters_.take(static_cast<wchar_t>(number));
        if (character && !window_.typeOwn(*character))
            press(*character);
        return character.has_value() || IS_HIGH_SURROGATE(number);
    }
    if (window_.pressOwn(message, number))
        return true;
    if (message == WM_SYSKEYDOWN)
        return false;
    if (number == VK_F1)
        window_.help();
    const auto key = keyOf(number);
    if (key)
        press(*key);
    return key.has_value() || number == VK_F1;
}

LRESULT ControlView::receive(UINT message, WPARAM number, LPARAM data)
{
    if (!window_.alive())
        return inherited(message, number, data);
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS;
    case WM_KEYDOWN:
    case WM_CHAR:
        if (keyed(message, number) || !hasOwnKeys())
            return 0;
        break;
    case WM_SYSKEYDOWN:
        // The system has to know that Alt was not pressed alone: else it opens a menu when that is let go.
        if (keyed(message, number))
            return DefWindowProcW(handle(), message, number, data);
        break;
    case WM_KEYUP:
        if (!hasOwnKeys())
            return 0;
        break;
    case WM_SETFOCUS:
        if (!window_.busy())
            window_.later([this] { window_.takeFocusOver(*this); });
        break;
    case WM_MEASUREITEM: // Of a grid in a frame.
        reinterpret_cast<MEASUREITEMSTRUCT*>(data)->itemHeight = static_cast<UINT>(window_.rowHeight());
        return TRUE;
    default:
        break;
    }
    return Window::receive(message, number, data);
}

} // namespace zv::win32
