#include "win32/Zoom.h"

#include "win32/System.h"

namespace zv::win32 {

namespace {

/// The module's own settings, whichever program it is loaded into.
constexpr wchar_t place[] = L"Software\\ZVConfiguracion\\ventanas";
constexpr wchar_t name[] = L"zoom";

} // namespace

void Zoom::remember()
{
    DWORD last = 0;
    DWORD size = sizeof last;
    if (RegGetValueW(HKEY_CURRENT_USER, place, name, RRF_RT_REG_DWORD, nullptr, &last, &size) !=
        ERROR_SUCCESS)
        last = 0;
    Magnification::remember(static_cast<int>(last), [](int percent) {
        const auto kept = static_cast<DWORD>(percent);
        RegSetKeyValueW(HKEY_CURRENT_USER, place, name, REG_DWORD, &kept, sizeof kept);
    });
}

} // namespace zv::win32
