#include "win32/Sheet.h"

#include <algorithm>

namespace zv::win32 {

namespace {

constexpr LONG step = 40;
constexpr LONG edge = 8; ///< Around what is scrolled to.

/// Where a stretch begins that shows the part, beginning from where it does now.
LONG showing(LONG from, LONG page, LONG start, LONG end)
{
    if (end + edge > page)
        from += end + edge - page;
    return from + std::min<LONG>(0, start - edge - std::max<LONG>(0, end + edge - page));
}

} // namespace

SIZE Sheet::page() const
{
    RECT inside{};
    GetClientRect(window_, &inside);
    return {inside.right, inside.bottom};
}

void Sheet::fit(SIZE whole)
{
    whole_ = whole;
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    GetMonitorInfoW(MonitorFromWindow(window_, MONITOR_DEFAULTTONEAREST), &screen);
    const SIZE room{screen.rcWork.right - screen.rcWork.left, screen.rcWork.bottom - screen.rcWork.top};
    RECT outside{0, 0, whole.cx, whole.cy};
    addFrame(outside, window_);
    SIZE size{outside.right - outside.left, outside.bottom - outside.top};
    const bool wide =
        size.cx > room.cx || (size.cy > room.cy && size.cx + GetSystemMetrics(SM_CXVSCROLL) > room.cx);
    const bool high = size.cy > room.cy || (wide && size.cy + GetSystemMetrics(SM_CYHSCROLL) > room.cy);
    size.cx = std::min(room.cx, size.cx + (high ? GetSystemMetrics(SM_CXVSCROLL) : 0));
    size.cy = std::min(room.cy, size.cy + (wide ? GetSystemMetrics(SM_CYHSCROLL) : 0));
    ShowScrollBar(window_, SB_HORZ, wide);
    ShowScrollBar(window_, SB_VERT, high);
    SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    moveTo(corner_);
}

void Sheet::moveTo(POINT corner)
{
    const SIZE seen = page();
    corner.x = std::clamp<LONG>(corner.x, 0, std::max<LONG>(0, whole_.cx - seen.cx));
    corner.y = std::clamp<LONG>(corner.y, 0, std::max<LONG>(0, whole_.cy - seen.cy));
    const struct {
        int bar;
        LONG whole, page, at;
        bool shown;
    } bars[] = {{SB_HORZ, whole_.cx, seen.cx, corner.x, whole_.cx > seen.cx},
                {SB_VERT, whole_.cy, seen.cy, corner.y, whole_.cy > seen.cy}};
    for (const auto& each : bars) {
        if (!each.shown)
            continue;
        SCROLLINFO info{sizeof info, SIF_ALL, 0, each.whole - 1, static_cast<UINT>(each.page), each.at, 0};
        SetScrollInfo(window_, each.bar, &info, TRUE);
    }
    const POINT by{corner_.x - corner.x, corner_.y - corner.y};
    corner_ = corner;
    if (by.x != 0 || by.y != 0)
        ScrollWindowEx(window_, by.x, by.y, nullptr, nullptr, nullptr, nullptr,
                       SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
}

void Sheet::scroll(int bar, WPARAM number)
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(window_, bar, &info);
    LONG at = info.nPos;
    switch (LOWORD(number)) {
    case SB_LINEUP:
        at -= step;
        break;
    case SB_LINEDOWN:
        at += step;
        break;
    case SB_PAGEUP:
        at -= static_cast<LONG>(info.nPage);
        break;
    case SB_PAGEDOWN:
        at += static_cast<LONG>(info.nPage);
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        at = info.nTrackPos;
        break;
    default:
        return;
    }
    moveTo(bar == SB_HORZ ? POINT{at, corner_.y} : POINT{corner_.x, at});
}

void Sheet::turn(WPARAM number)
{
    moveTo({corner_.x, corner_.y - GET_WHEEL_DELTA_WPARAM(number) * step / WHEEL_DELTA});
}

void Sheet::reveal(const RECT& part)
{
    const SIZE seen = page();
    moveTo({showing(corner_.x, seen.cx, part.left, part.right),
            showing(corner_.y, seen.cy, part.top, part.bottom)});
}

} // namespace zv::win32
