#include "win32/System.h"

#include "views/Measures.h"

#include <algorithm>
#include <cmath>

namespace zv::win32 {

namespace {

/// A function that older systems lack, or nullptr.
template <class Function>
Function* found(const char* name)
{
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"user32.dll"), name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(address));
}

decltype(&SetThreadDpiAwarenessContext) threadSetter()
{
    static auto* const setter = found<decltype(SetThreadDpiAwarenessContext)>("SetThreadDpiAwarenessContext");
    return setter;
}

thread_local HDC shared = nullptr; ///< While a Measuring lives.

/// RAII guard: a device to measure with.
class Measure {
public:
    explicit Measure(HFONT font) : before_(SelectObject(device_, font)) {}
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;
    ~Measure()
    {
        SelectObject(device_, before_);
        if (device_ != shared)
            ReleaseDC(nullptr, device_);
    }
    HDC device() const { return device_; }

private:
    HDC device_ = shared != nullptr ? shared : GetDC(nullptr);
    HGDIOBJ before_;
};

LOGFONTW messageFont()
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return metrics.lfMessageFont;
}

} // namespace

PerScreen::PerScreen() : before_(nullptr)
{
    if (threadSetter() != nullptr)
        before_ = threadSetter()(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
}

PerScreen::~PerScreen()
{
    if (before_ != nullptr)
        threadSetter()(before_);
}

OwnControls::OwnControls()
{
    ACTCTXW wanted{};
    wanted.cbSize = sizeof wanted;
    wanted.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    wanted.lpResourceName = MAKEINTRESOURCEW(2); // A library's, by the system's convention.
    constexpr DWORD how =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExW(how, reinterpret_cast<const wchar_t*>(&dotsOf), &wanted.hModule);
    context_ = CreateActCtxW(&wanted);
    if (context_ != INVALID_HANDLE_VALUE)
        ActivateActCtx(context_, &cookie_);
}

OwnControls::~OwnControls()
{
    if (context_ == INVALID_HANDLE_VALUE)
        return;
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
}

LRESULT onGround(WPARAM device)
{
    const auto drawn = reinterpret_cast<HDC>(device);
    SetTextColor(drawn, GetSysColor(COLOR_BTNTEXT));
    SetBkColor(drawn, GetSysColor(COLOR_3DFACE));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_3DFACE));
}

int dotsOf(HWND window)
{
    if (auto* dots = found<decltype(GetDpiForWindow)>("GetDpiForWindow"))
        return static_cast<int>(dots(window));
    const Measure measure(nullptr);
    return GetDeviceCaps(measure.device(), LOGPIXELSX);
}

void addFrame(RECT& inside, HWND window)
{
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    const auto extended = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
    if (auto* adjust = found<decltype(AdjustWindowRectExForDpi)>("AdjustWindowRectExForDpi"))
        adjust(&inside, style, FALSE, extended, static_cast<UINT>(dotsOf(window)));
    else
        AdjustWindowRectEx(&inside, style, FALSE, extended);
}

RECT workAreaOf(HWND window)
{
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &screen);
    return screen.rcWork;
}

double systemLetters()
{
    const Measure measure(nullptr);
    const Scale system(GetDeviceCaps(measure.device(), LOGPIXELSX));
    return std::abs(static_cast<double>(messageFont().lfHeight)) / system.pixels(largestFont);
}

Measuring::Measuring() : first_(shared == nullptr)
{
    if (first_)
        shared = GetDC(nullptr);
}

Measuring::~Measuring()
{
    if (first_)
        ReleaseDC(nullptr, std::exchange(shared, nullptr));
}

Font::Font(int pixels)
{
    LOGFONTW font = messageFont();
    font.lfHeight = -pixels;
    font.lfWidth = 0;
    font.lfQuality = CLEARTYPE_QUALITY;
    handle_ = CreateFontIndirectW(&font);
}

Font Font::narrowed(int hundredths) const
{
    LOGFONTW font{};
    GetObjectW(handle_, sizeof font, &font);
    TEXTMETRICW usual{};
    const Measure measure(handle_);
    GetTextMetricsW(measure.device(), &usual);
    font.lfWidth = std::max<LONG>(1, usual.tmAveCharWidth * hundredths / 100);
    Font result;
    result.handle_ = CreateFontIndirectW(&font);
    return result;
}

Font::~Font()
{
    if (handle_ != nullptr)
        DeleteObject(handle_);
}

int Font::height() const
{
    const Measure measure(handle_);
    TEXTMETRICW metrics{};
    GetTextMetricsW(measure.device(), &metrics);
    return metrics.tmHeight;
}

int Font::height(const String& text, int across) const
{
    const Measure measure(handle_);
    RECT needed{0, 0, across, 0};
    DrawTextW(measure.device(), wide(text), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    return static_cast<int>(needed.bottom);
}

int Font::widest(std::span<const StringView> texts) const
{
    const Measure measure(handle_);
    LONG widest = 0;
    for (const StringView text : texts) {
        SIZE size{};
        GetTextExtentPoint32W(measure.device(), reinterpret_cast<const wchar_t*>(text.data()),
                              static_cast<int>(text.size()), &size);
        widest = std::max(widest, size.cx);
    }
    return static_cast<int>(widest);
}

} // namespace zv::win32
