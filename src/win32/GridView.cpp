#include "win32/GridView.h"

#include "views/ViewRules.h"

#include <algorithm>

#include <windowsx.h>

namespace zv::win32 {

namespace {

/// In twips: from the edge of a cell to its text, and the frame of a table that has the focus.
constexpr Long cellMargin = 60;
constexpr Long focusEdge = 30;

UINT alignmentOf(Integer number) { return number == 4 ? DT_CENTER : number == 7 ? DT_RIGHT : DT_LEFT; }

int formatOf(Integer number) { return number == 4 ? HDF_CENTER : number == 7 ? HDF_RIGHT : HDF_LEFT; }

bool between(Long value, Long one, Long other)
{
    return value >= std::min(one, other) && value <= std::max(one, other);
}

} // namespace

GridHeading::GridHeading(HWND heading, Click click) : Window(heading), click_(std::move(click)) {}

LRESULT GridHeading::receive(UINT message, WPARAM number, LPARAM data)
{
    if (message == HDM_LAYOUT) {
        const LRESULT result = inherited(message, number, data);
        auto& layout = *reinterpret_cast<HDLAYOUT*>(data);
        if (height_ > 0) {
            layout.pwpos->cy = height_;
            layout.prc->top = height_;
        }
        return result;
    }
    if (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK) {
        HDHITTESTINFO hit{{GET_X_LPARAM(data), GET_Y_LPARAM(data)}, 0, 0};
        const auto place = static_cast<int>(send(handle(), HDM_HITTEST, 0, &hit));
        if ((hit.flags & HHT_ONHEADER) != 0) {
            if (message == WM_LBUTTONDOWN)
                click_(place);
            return 0;
        }
    }
    return Window::receive(message, number, data);
}

GridView::GridView(ViewSite& window, MSFlexGrid& grid, HWND parent)
    : ViewOf(window, grid, WC_LISTVIEWW,
             LVS_REPORT | LVS_OWNERDATA | LVS_OWNERDRAWFIXED | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_BORDER,
             0, parent)
{
    send(handle(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_DOUBLEBUFFER, LVS_EX_DOUBLEBUFFER);
}

GridView::~GridView() = default;

void GridView::followContent()
{
    const Deeper following(following_);
    name(); // A grid on the pages of a strip has the name of the page.
    followHeight();
    followColumns();
    send(handle(), LVM_SETITEMCOUNT, static_cast<WPARAM>(typed().Rows()) - 1, LVSICF_NOSCROLL);
    LVITEMW state{};
    state.stateMask = LVIS_FOCUSED | LVIS_SELECTED;
    state.state = state.stateMask;
    if (typed().Row() >= 1 && typed().Row() < typed().Rows())
        send(handle(), LVM_SETITEMSTATE, static_cast<WPARAM>(typed().Row()) - 1, &state);
    followScroll();
    InvalidateRect(handle(), nullptr, TRUE);
}

/// A list asks for its rows' height when it is made, and again when it is told that it was moved.
void GridView::followHeight()
{
    if (std::exchange(height_, window().rowHeight()) == window().rowHeight())
        return;
    WINDOWPOS place{};
    place.hwnd = handle();
    place.flags = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    send(handle(), WM_WINDOWPOSCHANGED, 0, &place);
}

void GridView::followColumns()
{
    std::vector<Long> columns;
    for (Long column = 0; column < typed().Cols(); ++column)
        if (typed().ColWidth(column) != 0)
            columns.push_back(column);
    if (columns != columns_) {
        while (send(handle(), LVM_DELETECOLUMN) != 0) {
        }
        columns_ = std::move(columns);
        shares_.clear();
        LVCOLUMNW none{};
        none.mask = LVCF_WIDTH | LVCF_FMT;
        for (std::size_t place = 0; place < columns_.size(); ++place)
            send(handle(), LVM_INSERTCOLUMNW, place, &none);
    }
    // The system makes it with the first column.
    if (!heading_ && heading() != nullptr)
        heading_.emplace(heading(), [this](int place) { choose(0, place); });
    if (heading_)
        heading_->setHeight(window().pixels(typed().rowHeight()));
    followTitles();
    const std::vector<int> wanted = widths();
    for (std::size_t place = 0; place < wanted.size(); ++place)
        if (send(handle(), LVM_GETCOLUMNWIDTH, place) != wanted[place])
            send(handle(), LVM_SETCOLUMNWIDTH, place, MAKELPARAM(wanted[place], 0));
    window().columnsMoved();
}

void GridView::followTitles()
{
    for (std::size_t place = 0; place < columns_.size(); ++place) {
        String title = typed().TextMatrix(0, columns_[place]);
        HDITEMW item{};
        item.mask = HDI_TEXT | HDI_FORMAT;
        item.fmt = HDF_STRING | formatOf(typed().ColAlignment(columns_[place]));
        item.pszText = reinterpret_cast<wchar_t*>(title.data());
        send(heading(), HDM_SETITEMW, place, &item);
    }
}

int GridView::room() const
{
    RECT place{};
    GetWindowRect(handle(), &place);
    const int height = static_cast<int>(place.bottom - place.top) - 2 * GetSystemMetrics(SM_CYBORDER);
    const bool scrolls = window().pixels(typed().rowHeight()) * typed().Rows() > height;
    return static_cast<int>(place.right - place.left) - 2 * GetSystemMetrics(SM_CXBORDER) -
           (scrolls ? GetSystemMetrics(SM_CXVSCROLL) : 0);
}

std::vector<ColumnNeed> GridView::needs() const
{
    const Font& font = window().font();
    const int letter = font.width(u"n");
    const int beside = 2 * window().pixels(cellMargin) + letter;
    const Long rows = std::min<Long>(typed().Rows(), measuredRows + 1);
    std::vector<ColumnNeed> all;
    for (const Long column : columns_) {
        std::vector<StringView> texts;
        for (Long row = 0; row < rows; ++row)
            texts.push_back(typed().TextMatrix(row, column));
        all.push_back({font.widest(texts) + beside, titleWidth(column), 12 * letter});
    }
    return all;
}

int GridView::titleWidth(Long column) const
{
    return window().font().width(typed().TextMatrix(0, column)) + 4 * window().pixels(cellMargin);
}

std::vector<int> GridView::widths() const
{
    std::vector<int> all;
    for (const Long column : columns_)
        all.push_back(window().pixels(typed().ColWidth(column)));
    if (window().bare() || all.empty())
        return all;
    return columnWidths(
        std::move(all), shares_, room(), [this] { return needs(); }, titleWidth(columns_.back()));
}

void GridView::dragged()
{
    shares_.clear();
    for (std::size_t place = 0; place < columns_.size(); ++place)
        shares_.push_back(static_cast<double>(send(handle(), LVM_GETCOLUMNWIDTH, place)) / room());
    followContent();
}

void GridView::followScroll()
{
    const auto top = static_cast<Long>(send(handle(), LVM_GETTOPINDEX)) + 1;
    const int by = (typed().TopRow() - top) * window().pixels(typed().rowHeight());
    if (by != 0)
        send(handle(), LVM_SCROLL, 0, by);
}

void GridView::scrolled()
{
    const auto top = static_cast<Long>(send(handle(), LVM_GETTOPINDEX)) + 1;
    if (window().alive() && following_ == 0 && !window().busy() && top != typed().TopRow() &&
        top < typed().Rows())
        act([&](Acts& acts) { return acts.scroll(typed(), top); });
}

std::optional<std::pair<int, int>> GridView::currentColumn() const
{
    const auto found = std::ranges::find(columns_, typed().Col());
    if (found == columns_.end())
        return std::nullopt;
    const RECT place = cell(0, static_cast<int>(found - columns_.begin()));
    return std::pair<int, int>(place.left, place.right - place.left);
}

RECT GridView::cell(Long row, int place) const
{
    RECT title{};
    send(heading(), HDM_GETITEMRECT, static_cast<WPARAM>(place), &title);
    MapWindowPoints(heading(), handle(), reinterpret_cast<POINT*>(&title), 2);
    if (row == 0)
        return title;
    RECT line{};
    line.left = LVIR_BOUNDS;
    if (send(handle(), LVM_GETITEMRECT, static_cast<WPARAM>(row) - 1, &line) == 0 || line.top < title.bottom)
        return {};
    return {title.left, line.top, title.right, line.bottom};
}

bool GridView::selected(Long row, Long column) const
{
    const MSFlexGrid& grid = typed();
    if (hasLines(grid))
        return chosen_ == grid.RowData(row);
    return between(row, grid.Row(), grid.RowSel()) && between(column, grid.Col(), grid.ColSel());
}

/// Frames the rows of the grid that has the focus: its cell may be the heading's, or out of sight.
void GridView::drawFocus() const
{
    RECT title{};
    GetClientRect(heading(), &title);
    RECT rows{};
    GetClientRect(handle(), &rows);
    rows.top = title.bottom;
    const HDC device = GetDC(handle());
    for (int line = 0; line < window().pixels(focusEdge); ++line) {
        FrameRect(device, &rows, GetSysColorBrush(COLOR_HIGHLIGHT));
        InflateRect(&rows, -1, -1);
    }
    ReleaseDC(handle(), device);
}

void GridView::draw(const DRAWITEMSTRUCT& drawn) const
{
    const Long row = static_cast<Long>(drawn.itemID) + 1;
    if (row >= typed().Rows())
        return;
    for (std::size_t place = 0; place < columns_.size(); ++place) {
        RECT area = cell(0, static_cast<int>(place));
        area.top = drawn.rcItem.top;
        area.bottom = drawn.rcItem.bottom;
        if (columns_[place] < typed().Cols())
            drawCell(drawn.hDC, area, row, columns_[place]);
    }
}

void GridView::drawCell(HDC device, RECT place, Long row, Long column) const
{
    const bool lit = selected(row, column);
    const bool enabled = IsWindowEnabled(handle()) != 0;
    FillRect(device, &place, GetSysColorBrush(lit ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(lit       ? COLOR_HIGHLIGHTTEXT
                                     : enabled ? COLOR_WINDOWTEXT
                                               : COLOR_GRAYTEXT));
    RECT edge{place.right - 1, place.top, place.right, place.bottom};
    FillRect(device, &edge, GetSysColorBrush(COLOR_3DLIGHT));
    edge = {place.left, place.bottom - 1, place.right, place.bottom};
    FillRect(device, &edge, GetSysColorBrush(COLOR_3DLIGHT));
    RECT inside = place;
    InflateRect(&inside, -window().pixels(cellMargin), 0);
    DrawTextW(device, wide(typed().TextMatrix(row, column)), -1, &inside,
              alignmentOf(typed().ColAlignment(column)) | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX |
                  DT_END_ELLIPSIS);
    if (row == typed().Row() && column == typed().Col() && GetFocus() == handle())
        DrawFocusRect(device, &place);
}

void GridView::tellText(NMLVDISPINFOW& asked) const
{
    const Long row = asked.item.iItem + 1;
    const auto place = static_cast<std::size_t>(asked.item.iSubItem);
    if ((asked.item.mask & LVIF_TEXT) == 0 || asked.item.cchTextMax == 0)
        return;
    StringView text;
    if (row < typed().Rows() && place < columns_.size() && columns_[place] < typed().Cols())
        text = typed().TextMatrix(row, columns_[place]);
    text = cut(text, static_cast<std::size_t>(asked.item.cchTextMax) - 1);
    text.copy(reinterpret_cast<char16_t*>(asked.item.pszText), text.size());
    asked.item.pszText[text.size()] = L'\0';
}

bool GridView::told(UINT message, WPARAM, LPARAM data, LRESULT& result)
{
    if (message == WM_DRAWITEM) {
        draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(data));
        result = TRUE;
        return true;
    }
    if (message != WM_NOTIFY)
        return false;
    const auto code = reinterpret_cast<const NMHDR*>(data)->code;
    if (code == static_cast<UINT>(LVN_GETDISPINFOW))
        tellText(*reinterpret_cast<NMLVDISPINFOW*>(data));
    if (code == static_cast<UINT>(LVN_ENDSCROLL))
        scrolled();
    return code == static_cast<UINT>(LVN_GETDISPINFOW);
}

void GridView::noteChosen()
{
    // A click on the heading chooses what no line has.
    chosen_ = typed().RowData(typed().Row());
    InvalidateRect(handle(), nullptr, FALSE);
}

void GridView::press(const Keystroke& key)
{
    ViewOf::press(key);
    // In a grid the space bar clicks.
    if (window().alive() && key == Keystroke(String(u" ")))
        noteChosen();
}

bool GridView::paged(WPARAM code)
{
    if ((code != VK_PRIOR && code != VK_NEXT) || held(VK_CONTROL))
        return false;
    const Long rows = typed().visibleRows();
    const Long top = typed().TopRow() + (code == VK_NEXT ? rows : -rows);
    act([&](Acts& acts) { return acts.scroll(typed(), std::clamp<Long>(top, 0, typed().Rows() - 1)); });
    return true;
}

void GridView::clicked(int x, int y)
{
    LVHITTESTINFO hit{};
    hit.pt = {x, y};
    send(handle(), LVM_SUBITEMHITTEST, 0, &hit);
    if (hit.iItem < 0 || hit.iSubItem < 0)
        act([this](Acts& acts) { return acts.focus(control()); });
    else
        choose(hit.iItem + 1, hit.iSubItem);
}

void GridView::choose(Long row, int place)
{
    flush();
    // Bounds check: the grid may have shrunk since it was asked for.
    if (row < typed().Rows() && static_cast<std::size_t>(place) < columns_.size() && act([&](Acts& acts) {
            return acts.clickCell(typed(), row, columns_[static_cast<std::size_t>(place)]);
        }) &&
        window().alive())
        noteChosen();
}

LRESULT GridView::receive(UINT message, WPARAM number, LPARAM data)
{
    if (!window().alive())
        return ViewOf::receive(message, number, data);
    switch (message) {
    case WM_KEYDOWN:
        if (paged(number))
            return 0;
        break;
    case WM_LBUTTONDOWN:
        clicked(GET_X_LPARAM(data), GET_Y_LPARAM(data));
        return 0;
    case WM_LBUTTONDBLCLK:
        act([this](Acts& acts) { return acts.clickCellAgain(typed()); });
        return 0;
    case WM_RBUTTONDOWN:
        return 0;
    case WM_SETFOCUS: // It is drawn otherwise; and what scrolls takes the edge with it.
    case WM_KILLFOCUS:
    case WM_VSCROLL:
    case WM_MOUSEWHEEL:
    case LVM_SCROLL:
        InvalidateRect(handle(), nullptr, FALSE);
        break;
    case WM_NOTIFY: {
        const auto code = reinterpret_cast<const NMHDR*>(data)->code;
        const LRESULT result = inherited(message, number, data);
        if (code == static_cast<UINT>(HDN_ENDTRACKW) || code == static_cast<UINT>(HDN_ENDTRACKA))
            window().later([this] { dragged(); });
        return result;
    }
    default:
        break;
    }
    const LRESULT result = ViewOf::receive(message, number, data);
    if (message == WM_PAINT && GetFocus() == handle())
        drawFocus();
    if (message == WM_VSCROLL || message == WM_MOUSEWHEEL)
        scrolled();
    return result;
}

} // namespace zv::win32
