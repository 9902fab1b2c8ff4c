#include "win32/Win32Desktop.h"

#include "win32/Help.h"
#include "win32/Message.h"

#include <algorithm>

namespace zv::win32 {

namespace {

/// Adds to a list each window of the thread on which a person can act.
BOOL CALLBACK collect(HWND window, LPARAM list)
{
    if (IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0)
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

} // namespace

Win32Desktop::Win32Desktop()
{
    const INITCOMMONCONTROLSEX wanted{sizeof wanted, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES |
                                                         ICC_LISTVIEW_CLASSES | ICC_WIN95_CLASSES};
    InitCommonControlsEx(&wanted);
}

Win32Desktop::~Win32Desktop() { endAll(); }

HWND Win32Desktop::front() const
{
    return windows().empty() ? GetActiveWindow() : windows().back().window->handle();
}

void Win32Desktop::opened(Form& form)
{
    const PerScreen perScreen;
    const OwnControls ownControls;
    WindowDesktop::opened(form);
}

std::unique_ptr<FormWindow> Win32Desktop::make(Form& form)
{
    auto window = std::make_unique<FormWindow>(form, front(), helps() ? &zoom_ : nullptr);
    std::vector<HWND> others;
    EnumThreadWindows(GetCurrentThreadId(), &collect, reinterpret_cast<LPARAM>(&others));
    std::erase_if(others, [&](HWND other) {
        return std::ranges::any_of(windows(),
                                   [&](const Shown& each) { return each.window->handle() == other; });
    });
    window->disable(std::move(others));
    for (const Shown& each : windows())
        each.window->cover(true);
    return window;
}

void Win32Desktop::runModal(Form& form)
{
    const PerScreen perScreen;
    WindowDesktop::runModal(form);
    // A host may unload the library at any time between two calls, which ends no thread.
    if (windows().empty() && journal::recording())
        journal::recorder().rest();
}

void Win32Desktop::runWindow(FormWindow& window)
{
    Form& form = window.form();
    window.ready();
    MSG message{};
    while (form.Visible()) {
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            // The host's end: it goes on to the host's own loop.
            form.guarded([&] { form.Unload(); });
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
        Window::rethrowHeld();
    }
}

void Win32Desktop::leaving(FormWindow& window)
{
    window.giveBack();
    for (const Shown& each : windows())
        each.window->cover(&each != &windows().back());
}

void Win32Desktop::tell(Integer flags, StringView title, StringView text)
{
    const PerScreen perScreen;
    const OwnControls ownControls;
    showMessage(
        front(), text, flags, title, [this](HWND box) { shown(box); },
        [](HWND box) { showHelp(box, u"mensajes"); });
}

void Win32Desktop::beep() { MessageBeep(MB_OK); }

void Win32Desktop::repaint()
{
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE) != 0)
        DispatchMessageW(&message);
}

void Win32Desktop::showPointer(bool waits) { SetCursor(LoadCursorW(nullptr, waits ? IDC_WAIT : IDC_ARROW)); }

void Win32Desktop::changed(PropertyOwner& owner, const PropertyBase* property)
{
    const PerScreen perScreen;
    WindowDesktop::changed(owner, property);
}

} // namespace zv::win32
