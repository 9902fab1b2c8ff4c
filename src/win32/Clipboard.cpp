#include "win32/Clipboard.h"

namespace zv::win32 {

String clipboardText(HWND asking)
{
    String text;
    if (OpenClipboard(asking) == 0)
        return text;
    if (HANDLE data = GetClipboardData(CF_UNICODETEXT); data != nullptr) {
        if (const auto* units = static_cast<const char16_t*>(GlobalLock(data)); units != nullptr)
            text = units;
        GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
}

void putOnClipboard(HWND owner, StringView text)
{
    if (OpenClipboard(owner) == 0)
        return;
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
    auto* units = static_cast<char16_t*>(GlobalLock(memory));
    text.copy(units, text.size());
    units[text.size()] = u'\0';
    GlobalUnlock(memory);
    EmptyClipboard();
    if (SetClipboardData(CF_UNICODETEXT, memory) == nullptr) // Else it is the clipboard's.
        GlobalFree(memory);
    CloseClipboard();
}

} // namespace zv::win32
