#include "win32/Window.h"

#include "runtime/Errors.h"

#include <exception>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace zv::win32 {

namespace {

/// Which object owns a window, of any thread's: asked for at each message, where a property of the window is
/// a call of the system. Others may put a routine of theirs before ours, as tips do.
class Owners {
public:
    void put(HWND window, Window* owner)
    {
        const std::lock_guard lock(mutex_);
        owners_[window] = owner;
    }
    bool remove(HWND window)
    {
        const std::lock_guard lock(mutex_);
        return owners_.erase(window) != 0;
    }
    Window* of(HWND window)
    {
        const std::lock_guard lock(mutex_);
        const auto found = owners_.find(window);
        return found == owners_.end() ? nullptr : found->second;
    }

private:
    std::mutex mutex_;
    std::unordered_map<HWND, Window*> owners_;
};

Owners& owners()
{
    static Owners all;
    return all;
}

/// What a routine of this thread's windows threw, until user32 has returned.
thread_local std::exception_ptr withheld;

HWND senderOf(UINT message, WPARAM, LPARAM data)
{
    switch (message) {
    case WM_COMMAND:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
        return reinterpret_cast<HWND>(data);
    case WM_NOTIFY:
        return reinterpret_cast<const NMHDR*>(data)->hwndFrom;
    case WM_DRAWITEM:
        return reinterpret_cast<const DRAWITEMSTRUCT*>(data)->hwndItem;
    default:
        return nullptr;
    }
}

} // namespace

Window::Window(const wchar_t* kind, DWORD style, DWORD extended, HWND parent)
    : handle_(CreateWindowExW(extended, kind, L"", style, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, parent, nullptr,
                              GetModuleHandleW(nullptr), nullptr))
{
    if (handle_ == nullptr)
        fail(failure::invalidCall, u"Windows no ha podido crear una ventana");
    hook();
}

Window::Window(HWND made) : handle_(made), owned_(false) { hook(); }

void Window::hook()
{
    owners().put(handle_, this);
    before_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(handle_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
}

Window::~Window()
{
    if (handle_ != nullptr && owned_)
        DestroyWindow(handle_);
    else if (handle_ != nullptr && owners().remove(handle_))
        SetWindowLongPtrW(handle_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
}

Window* Window::of(HWND window) { return window == nullptr ? nullptr : owners().of(window); }

void Window::rethrowHeld()
{
    if (withheld)
        std::rethrow_exception(std::exchange(withheld, nullptr));
}

LRESULT Window::receive(UINT message, WPARAM number, LPARAM data)
{
    LRESULT result = 0;
    Window* child = of(senderOf(message, number, data));
    if (child != nullptr && child->told(message, number, data, result))
        return result;
    return inherited(message, number, data);
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM number, LPARAM data)
{
    Window* owner = of(window);
    if (message == WM_NCDESTROY) {
        const WNDPROC before = owner->before_;
        owner->handle_ = nullptr;
        owners().remove(window);
        return CallWindowProcW(before, window, message, number, data);
    }
    try {
        return owner->receive(message, number, data);
    } catch (...) {
        withheld = std::current_exception();
        return 0;
    }
}

/// Its routine is the system's, so that it outlives the library that registered it.
const wchar_t* Window::ourClass()
{
    static constexpr const wchar_t* name = L"ZVConfiguracion.Ventana";
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof kind;
    kind.style = CS_HREDRAW | CS_VREDRAW;
    kind.lpfnWndProc = DefWindowProcW;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
    kind.lpszClassName = name;
    RegisterClassExW(&kind); // Or it is there already.
    return name;
}

} // namespace zv::win32
