#include "win32/Sheet.h"

#include "views/Measures.h"

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
    return {inside.right, std::max<LONG>(0, inside.bottom - over_ - under_)};
}

SIZE Sheet::room() const
{
    const RECT work = workAreaOf(window_);
    RECT frame{};
    addFrame(frame, window_);
    return {work.right - work.left - (frame.right - frame.left),
            work.bottom - work.top - (frame.bottom - frame.top)};
}

void Sheet::fit(SIZE whole, int over, int under, int least)
{
    whole_ = whole;
    over_ = over;
    under_ = under;
    const SIZE most = room();
    const SIZE bar{GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL)};
    const ScrollBars bars =
        scrollBars({whole.cx, whole.cy}, {most.cx, most.cy - over - under}, {bar.cx, bar.cy});
    const LONG across = std::max<LONG>(least, whole.cx + (bars.down ? bar.cx : 0));
    const LONG down = whole.cy + over + under + (bars.across ? bar.cy : 0);
    RECT outside{0, 0, std::min(most.cx, across), std::min(most.cy, down)};
    addFrame(outside, window_);
    ShowScrollBar(window_, SB_HORZ, bars.across);
    ShowScrollBar(window_, SB_VERT, bars.down);
    SetWindowPos(window_, nullptr, 0, 0, outside.right - outside.left, outside.bottom - outside.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
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
    if (corner.x == corner_.x && corner.y == corner_.y)
        return;
    corner_ = corner;
    moved_();
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
            showing(corner_.y, seen.cy, part.top - over_, part.bottom - over_)});
}

} // namespace zv::win32
