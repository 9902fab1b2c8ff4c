#include "Bare.h"

#include <algorithm>

#include <commctrl.h>

namespace zv::bench {

namespace {

/// Text of any cell of a bare list.
wchar_t cellText[] = L"Texto de una celda";

std::wstring classOf(HWND window)
{
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

LRESULT ask(HWND window, UINT message, WPARAM number = 0, LPARAM data = 0)
{
    return SendMessageW(window, message, number, data);
}

std::wstring textOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

void addEntries(Copy& copy, HWND window)
{
    if (_wcsicmp(copy.kind.c_str(), WC_COMBOBOXW) == 0)
        for (LRESULT entry = 0; entry < ask(window, CB_GETCOUNT); ++entry) {
            std::wstring text(
                static_cast<std::size_t>(ask(window, CB_GETLBTEXTLEN, static_cast<WPARAM>(entry))), L'\0');
            ask(window, CB_GETLBTEXT, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.data()));
            copy.entries.push_back(text);
        }
    if (copy.kind == WC_TABCONTROLW)
        copy.entries.assign(static_cast<std::size_t>(ask(window, TCM_GETITEMCOUNT)), L"Pestaña");
    if (copy.kind != WC_LISTVIEWW)
        return;
    const LRESULT columns = ask(ListView_GetHeader(window), HDM_GETITEMCOUNT);
    for (LRESULT column = 0; column < columns; ++column)
        copy.columns.push_back(
            static_cast<int>(ask(window, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column))));
    copy.rows = static_cast<int>(ask(window, LVM_GETITEMCOUNT));
    // Nobody is there who would draw its rows.
    copy.style &= ~static_cast<DWORD>(LVS_OWNERDRAWFIXED);
}

struct Gathered {
    std::vector<HWND> windows;
    std::vector<Copy> copies;
};

void gather(Gathered& all, HWND window, std::size_t parent)
{
    Copy copy;
    copy.kind = classOf(window);
    if (copy.kind == WC_HEADERW) // The system makes it with its list.
        return;
    copy.text = textOf(window);
    copy.style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    copy.extended = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
    copy.parent = parent;
    GetWindowRect(window, &copy.place);
    if (!all.copies.empty())
        MapWindowPoints(nullptr, all.windows[parent], reinterpret_cast<POINT*>(&copy.place), 2);
    LOGFONTW font{};
    if (GetObjectW(reinterpret_cast<HGDIOBJ>(ask(window, WM_GETFONT)), sizeof font, &font) != 0)
        copy.size = -font.lfHeight;
    addEntries(copy, window);
    const std::size_t own = all.copies.size();
    all.windows.push_back(window);
    all.copies.push_back(copy);
    // The last in the order of depth was made first.
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        gather(all, child, own);
}

LRESULT CALLBACK answer(HWND window, UINT message, WPARAM number, LPARAM data)
{
    if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(data)->code == static_cast<UINT>(LVN_GETDISPINFOW)) {
        auto& asked = *reinterpret_cast<NMLVDISPINFOW*>(data);
        if ((asked.item.mask & LVIF_TEXT) != 0)
            asked.item.pszText = cellText;
        return 0;
    }
    return DefWindowProcW(window, message, number, data);
}

/// For the frame of a bare window, and for what groups its controls.
const wchar_t* bareClass()
{
    static constexpr const wchar_t* name = L"ZVConfiguracion.Desnuda";
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof kind;
    kind.lpfnWndProc = answer;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
    kind.lpszClassName = name;
    RegisterClassExW(&kind);
    return name;
}

HFONT fontOf(int size)
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    metrics.lfMessageFont.lfHeight = -size;
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

void fill(HWND window, const Copy& copy)
{
    const bool tabs = copy.kind == WC_TABCONTROLW;
    for (std::size_t at = 0; at < copy.entries.size(); ++at) {
        std::wstring text = copy.entries[at];
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text.data();
        if (tabs)
            ask(window, TCM_INSERTITEMW, at, reinterpret_cast<LPARAM>(&item));
        else
            ask(window, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    for (std::size_t at = 0; at < copy.columns.size(); ++at) {
        LVCOLUMNW column{};
        column.mask = LVCF_WIDTH | LVCF_TEXT;
        column.cx = copy.columns[at];
        column.pszText = cellText;
        ask(window, LVM_INSERTCOLUMNW, at, reinterpret_cast<LPARAM>(&column));
    }
    if (!copy.columns.empty())
        ask(window, LVM_SETITEMCOUNT, static_cast<WPARAM>(copy.rows));
}

} // namespace

std::vector<Copy> copied(HWND window)
{
    Gathered all;
    gather(all, window, 0);
    return all.copies;
}

HWND makeBare(const std::vector<Copy>& copies, std::vector<HFONT>& fonts)
{
    std::vector<HWND> made;
    HFONT font = nullptr;
    for (const Copy& copy : copies) {
        const bool ours = copy.kind.starts_with(L"ZVConfiguracion");
        const DWORD hidden = made.empty() ? static_cast<DWORD>(WS_VISIBLE) : 0;
        made.push_back(CreateWindowExW(
            copy.extended, ours ? bareClass() : copy.kind.c_str(), copy.text.c_str(), copy.style & ~hidden,
            copy.place.left, copy.place.top, copy.place.right - copy.place.left,
            copy.place.bottom - copy.place.top, made.empty() ? nullptr : made[copy.parent], nullptr,
            GetModuleHandleW(nullptr), nullptr));
        if (font == nullptr && copy.size != 0)
            fonts.push_back(font = fontOf(copy.size));
        if (copy.size != 0)
            ask(made.back(), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        fill(made.back(), copy);
    }
    ShowWindow(made.front(), SW_SHOW);
    const auto field = std::ranges::find_if(copies, [](const Copy& copy) {
        return _wcsicmp(copy.kind.c_str(), WC_EDITW) == 0 && (copy.style & WS_DISABLED) == 0;
    });
    if (field != copies.end())
        SetFocus(made[static_cast<std::size_t>(field - copies.begin())]);
    return made.front();
}

void settle()
{
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
        DispatchMessageW(&message);
}

} // namespace zv::bench
