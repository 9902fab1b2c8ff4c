#include "win32/Win32Desktop.h"

#include "runtime/Convert.h"
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

Win32Desktop::~Win32Desktop()
{
    // Detached first: the forms may be destroyed already.
    while (!windows_.empty()) {
        windows_.back().window->end();
        gone_.push_back(std::move(windows_.back()));
        windows_.pop_back();
    }
    sweep(0);
}

FormWindow* Win32Desktop::windowOf(const Form& form) const
{
    const auto found =
        std::ranges::find_if(windows_, [&](const Shown& each) { return &each.window->form() == &form; });
    return found == windows_.end() ? nullptr : found->window.get();
}

HWND Win32Desktop::front() const
{
    return windows_.empty() ? GetActiveWindow() : windows_.back().window->handle();
}

void Win32Desktop::opened(Form& form)
{
    forget(form);
    const PerScreen perScreen;
    const OwnControls ownControls;
    auto window = std::make_unique<FormWindow>(form, front(), !helps());
    Shown shown{std::move(window), depth_, {}};
    EnumThreadWindows(GetCurrentThreadId(), &collect, reinterpret_cast<LPARAM>(&shown.disabled));
    std::erase_if(shown.disabled, [&](HWND other) {
        return std::ranges::any_of(windows_,
                                   [&](const Shown& each) { return each.window->handle() == other; });
    });
    for (const HWND other : shown.disabled)
        EnableWindow(other, FALSE);
    for (const Shown& each : windows_)
        each.window->cover(true);
    windows_.push_back(std::move(shown));
    windows_.back().window->show();
}

void Win32Desktop::runModal(Form& form)
{
    FormWindow* window = windowOf(form);
    if (window == nullptr)
        return;
    const PerScreen perScreen;
    const int depth = depth_;
    {
        const Deeper deeper(depth_);
        runWindow(*window);
    }
    if (!form.Visible())
        forget(form);
    sweep(depth);
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

void Win32Desktop::closed(Form& form) { forget(form); }

void Win32Desktop::uncover()
{
    for (const Shown& each : windows_)
        each.window->cover(&each != &windows_.back());
}

void Win32Desktop::forget(const Form& form)
{
    const auto found =
        std::ranges::find_if(windows_, [&](const Shown& each) { return &each.window->form() == &form; });
    if (found == windows_.end())
        return;
    Shown ended = std::move(*found);
    windows_.erase(found);
    // Before it goes: else the system gives the keyboard to another program.
    for (const HWND other : ended.disabled)
        EnableWindow(other, TRUE);
    uncover();
    ended.window->end();
    gone_.push_back(std::move(ended));
    followPointer();
}

void Win32Desktop::sweep(int depth)
{
    // Children first: a window may be the owner of those opened after it.
    std::ranges::stable_sort(gone_, {}, &Shown::depth);
    while (!gone_.empty() && gone_.back().depth >= depth)
        gone_.pop_back();
}

void Win32Desktop::messageBox(StringView prompt, Integer flags, StringView title)
{
    tell(flags, title, prompt);
}

void Win32Desktop::handlerFailed(const RuntimeError& error)
{
    tell(sign::critical, u"Error " + decimalText(error.number()),
         u"La operación no ha terminado: " + error.description());
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

void Win32Desktop::doEvents()
{
    for (const Shown& each : windows_)
        if (each.window->alive())
            each.window->inStep();
    // No re-entrant acts: a person's input waits until the routine in hand has ended.
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE) != 0)
        DispatchMessageW(&message);
}

Long Win32Desktop::textWidth(StringView text)
{
    if (windows_.empty())
        return Desktop::textWidth(text);
    const FormWindow& window = *windows_.back().window;
    return window.twips(window.font().width(text));
}

void Win32Desktop::followPointer() const
{
    const bool waits = std::ranges::any_of(
        windows_, [](const Shown& each) { return each.window->form().MousePointer() == pointer::hourglass; });
    SetCursor(LoadCursorW(nullptr, waits ? IDC_WAIT : IDC_ARROW));
}

void Win32Desktop::changed(PropertyOwner& owner, const PropertyBase* property)
{
    auto* control = dynamic_cast<Control*>(&owner);
    Form& form = control != nullptr ? control->form() : dynamic_cast<Form&>(owner);
    FormWindow* window = windowOf(form);
    if (window == nullptr || !window->alive())
        return;
    const PerScreen perScreen;
    if (control != nullptr)
        window->controlChanged(*control, property);
    else if (property == &form.MousePointer)
        followPointer();
    else if (property == &form.Visible && !form.Visible())
        forget(form);
    else if (property != nullptr)
        window->changed(*property);
}

} // namespace zv::win32
