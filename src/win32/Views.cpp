#include "win32/Views.h"

#include "win32/Accessible.h"
#include "win32/GridView.h"
#include "win32/TextView.h"

#include <algorithm>

#include <windowsx.h>

namespace zv::win32 {

namespace {

constexpr Long tabHeight = 360;
constexpr Long tabPadding = 90;
constexpr int aboveTabs = 2; ///< In pixels, as the next: where the chosen tab stands out.
constexpr int paneEdge = 2;  ///< Of the pane under the tabs.
constexpr int normal = 100;  ///< Width of letters, in hundredths.
constexpr int closest = 70;
constexpr int entriesSeen = 12; ///< Of an opened list.

/// RAII guard: a window's painting.
class Painting {
public:
    explicit Painting(HWND window, HFONT font) : window_(window)
    {
        BeginPaint(window_, &paint_);
        SelectObject(paint_.hdc, font);
        SetBkMode(paint_.hdc, TRANSPARENT);
        SetTextColor(paint_.hdc, GetSysColor(IsWindowEnabled(window_) != 0 ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    }
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    ~Painting() { EndPaint(window_, &paint_); }
    HDC device() const { return paint_.hdc; }
    RECT area() const
    {
        RECT area{};
        GetClientRect(window_, &area);
        return area;
    }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
};

/// Of the sign at a mandatory field: a red that stands out from the ground; that of the texts where a person
/// has asked the system for contrast.
COLORREF mandatoryColour()
{
    HIGHCONTRASTW wanted{};
    wanted.cbSize = sizeof wanted;
    SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof wanted, &wanted, 0);
    if ((wanted.dwFlags & HCF_HIGHCONTRASTON) != 0)
        return GetSysColor(COLOR_BTNTEXT);
    const COLORREF ground = GetSysColor(COLOR_3DFACE);
    constexpr int middle = 128 * 1000;
    const bool dark = 299 * GetRValue(ground) + 587 * GetGValue(ground) + 114 * GetBValue(ground) < middle;
    return dark ? RGB(0xff, 0x8a, 0x80) : RGB(0xb3, 0x26, 0x1e);
}

template <class C>
constexpr DWORD buttonStyle = std::is_same_v<C, CommandButton> ? BS_PUSHBUTTON
                              : std::is_same_v<C, CheckBox>    ? BS_CHECKBOX
                                                               : BS_RADIOBUTTON;

template <class C, class V>
std::unique_ptr<ControlView> viewFor(ViewSite& window, Control& control, HWND parent)
{
    auto* target = dynamic_cast<C*>(&control);
    return target == nullptr ? nullptr : std::make_unique<V>(window, *target, parent);
}

} // namespace

LabelView::LabelView(ViewSite& window, Label& label, HWND parent)
    : ViewOf(window, label, WC_STATICW, SS_LEFT | SS_NOPREFIX, 0, parent)
{}

void LabelView::followContent()
{
    const RECT place = window().placeOf(control());
    const int width = place.right - place.left;
    const String& caption = typed().Caption();
    show(typed().Obligatorio() ? caption + u" (obligatorio)" : caption);
    const int needed = window().font().width(caption + u" *");
    const bool wraps = place.bottom - place.top > 2 * window().font().height();
    fits_ = wraps || needed <= width || width <= 0;
    if (!fits_)
        close_ = window().font().narrowed(std::max(closest, normal * width / needed));
    InvalidateRect(handle(), nullptr, TRUE);
}

void LabelView::paint()
{
    const Painting painting(handle(), (fits_ ? window().font() : close_).handle());
    RECT area = painting.area();
    FillRect(painting.device(), &area, GetSysColorBrush(COLOR_3DFACE));
    const String& caption = typed().Caption();
    DrawTextW(painting.device(), wide(caption), -1, &area, DT_LEFT | DT_TOP | DT_NOPREFIX | DT_WORDBREAK);
    if (!typed().Obligatorio())
        return;
    RECT last = area;
    DrawTextW(painting.device(), wide(caption), -1, &last, DT_CALCRECT | DT_NOPREFIX | DT_WORDBREAK);
    area.left = last.right;
    SetTextColor(painting.device(), mandatoryColour());
    DrawTextW(painting.device(), L" *", -1, &area, DT_LEFT | DT_TOP | DT_NOCLIP);
}

LRESULT LabelView::receive(UINT message, WPARAM number, LPARAM data)
{
    if (message != WM_PAINT)
        return ViewOf::receive(message, number, data);
    paint();
    return 0;
}

FrameView::FrameView(ViewSite& window, Frame& frame, HWND parent)
    : ViewOf(window, frame, ourClass(), WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, parent)
{}

void FrameView::followContent()
{
    if (!typed().Border())
        return;
    show(typed().Caption());
    tellGroup(handle(), typed().Caption());
    InvalidateRect(handle(), nullptr, TRUE);
}

void FrameView::paint()
{
    const Painting painting(handle(), window().font().handle());
    if (!typed().Border())
        return;
    const int height = window().font().height();
    RECT edge = painting.area();
    edge.top += height / 2;
    FrameRect(painting.device(), &edge, GetSysColorBrush(COLOR_3DSHADOW));
    const String& caption = typed().Caption();
    if (caption.empty())
        return;
    RECT title{height / 2, 0, height / 2 + window().font().width(caption) + height / 2, height};
    FillRect(painting.device(), &title, GetSysColorBrush(COLOR_3DFACE));
    DrawTextW(painting.device(), wide(caption), -1, &title, DT_CENTER | DT_SINGLELINE | DT_NOPREFIX);
}

LRESULT FrameView::receive(UINT message, WPARAM number, LPARAM data)
{
    if (message == WM_PAINT) {
        paint();
        return 0;
    }
    // What stands in it looks as it does.
    if (message == WM_ENABLE && window().alive())
        for (HWND each = GetWindow(handle(), GW_CHILD); each != nullptr; each = GetWindow(each, GW_HWNDNEXT))
            if (auto* view = dynamic_cast<ControlView*>(of(each)))
                view->followPlace();
    return ViewOf::receive(message, number, data);
}

template <class C>
ButtonView<C>::ButtonView(ViewSite& window, C& control, HWND parent)
    : ViewOf<C>(window, control, WC_BUTTONW, buttonStyle<C>, 0, parent)
{}

template <class C>
void ButtonView<C>::followContent()
{
    C& control = this->typed();
    this->show(control.Caption());
    if constexpr (std::is_same_v<C, CommandButton>)
        send(this->handle(), BM_SETSTYLE, control.Default() ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
    else
        send(this->handle(), BM_SETCHECK, control.Value() != 0 ? BST_CHECKED : BST_UNCHECKED);
}

template <class C>
bool ButtonView<C>::told(UINT message, WPARAM number, LPARAM, LRESULT& result)
{
    if (message == WM_CTLCOLORSTATIC) { // The system's own colour is that of texts in fields.
        result = onGround(number);
        return true;
    }
    // An option that gets the focus says that it is clicked.
    if (message != WM_COMMAND || HIWORD(number) != BN_CLICKED || this->window().busy())
        return false;
    this->click();
    return true;
}

template <class C>
LRESULT ButtonView<C>::receive(UINT message, WPARAM number, LPARAM data)
{
    const bool alive = this->window().alive();
    if (message == WM_LBUTTONDBLCLK)
        message = WM_LBUTTONDOWN;
    if (message == WM_LBUTTONDOWN && alive) {
        // The button takes the focus; the form's focus moves with the click.
        const Deeper own = this->window().ownDoing();
        return this->inherited(message, number, data);
    }
    const LRESULT result = ViewOf<C>::receive(message, number, data);
    if (message == WM_CAPTURECHANGED && alive && !this->window().busy())
        this->window().later([this] { this->window().inStep(); });
    return result;
}

TabsView::TabsView(ViewSite& window, TabStrip& strip, HWND parent)
    : ViewOf(window, strip, WC_TABCONTROLW, TCS_FOCUSNEVER | TCS_TOOLTIPS, 0, parent)
{}

void TabsView::followContent()
{
    TabStrip& strip = typed();
    send(handle(), TCM_SETPADDING, 0, MAKELPARAM(window().pixels(tabPadding), 3));
    send(handle(), TCM_SETITEMSIZE, 0, MAKELPARAM(0, window().pixels(tabHeight) - aboveTabs - paneEdge));
    while (TabCtrl_GetItemCount(handle()) > strip.tabCount())
        TabCtrl_DeleteItem(handle(), TabCtrl_GetItemCount(handle()) - 1);
    for (Long tab = 1; tab <= strip.tabCount(); ++tab) {
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        String caption = strip.Tabs(tab).Caption;
        item.pszText = reinterpret_cast<wchar_t*>(caption.data());
        const bool there = tab <= TabCtrl_GetItemCount(handle());
        send(handle(), there ? TCM_SETITEMW : TCM_INSERTITEMW, static_cast<WPARAM>(tab) - 1, &item);
    }
    if (strip.tabCount() > 0)
        send(handle(), TCM_SETCURSEL, static_cast<WPARAM>(strip.SelectedItem().Index()) - 1);
}

bool TabsView::told(UINT message, WPARAM, LPARAM data, LRESULT&)
{
    if (message != WM_NOTIFY || window().busy())
        return false;
    // By a screen reader: presses and keys are acts before the strip sees them.
    if (reinterpret_cast<const NMHDR*>(data)->code == static_cast<UINT>(TCN_SELCHANGE)) {
        const int tab = TabCtrl_GetCurSel(handle());
        window().later([this, tab] { act([&](Acts& acts) { return acts.clickTab(typed(), tab + 1); }); });
    }
    return false;
}

/// Paints the pane as the pages on it are, of which it is larger.
void TabsView::fillPane() const
{
    RECT pane{};
    GetClientRect(handle(), &pane);
    InflateRect(&pane, -paneEdge, -paneEdge);
    pane.top = window().pixels(tabHeight);
    const HDC device = GetDC(handle());
    FillRect(device, &pane, GetSysColorBrush(COLOR_3DFACE));
    ReleaseDC(handle(), device);
}

LRESULT TabsView::receive(UINT message, WPARAM number, LPARAM data)
{
    if (message == WM_PAINT) {
        const LRESULT result = ViewOf::receive(message, number, data);
        fillPane();
        return result;
    }
    if ((message != WM_LBUTTONDOWN && message != WM_LBUTTONDBLCLK) || !window().alive())
        return ViewOf::receive(message, number, data);
    TCHITTESTINFO hit{{GET_X_LPARAM(data), GET_Y_LPARAM(data)}, 0};
    const int tab = TabCtrl_HitTest(handle(), &hit);
    if (tab >= 0)
        act([&](Acts& acts) { return acts.clickTab(typed(), tab + 1); });
    return 0;
}

ListView::ListView(ViewSite& window, ComboBox& box, HWND parent)
    : ViewOf(window, box, WC_COMBOBOXW, CBS_DROPDOWNLIST | WS_VSCROLL, 0, parent)
{}

int ListView::heightIn(const RECT& place) const
{
    return ViewOf::heightIn(place) + entriesSeen * window().font().height();
}

void ListView::fill()
{
    const ComboBox& box = typed();
    std::vector<String> wanted;
    for (Long entry = 0; entry < box.ListCount(); ++entry)
        wanted.push_back(box.List(entry));
    if (wanted == entries_)
        return;
    entries_ = std::move(wanted);
    send(handle(), WM_SETREDRAW, FALSE);
    send(handle(), CB_RESETCONTENT);
    for (const String& entry : entries_)
        send(handle(), CB_ADDSTRING, 0, wide(entry));
    send(handle(), WM_SETREDRAW, TRUE);
    InvalidateRect(handle(), nullptr, TRUE);
    const RECT place = window().placeOf(control());
    int width = std::max<int>(typed().DroppedWidth(), place.right - place.left);
    constexpr std::size_t looked = 200;
    const std::vector<StringView> texts(entries_.begin(),
                                        entries_.begin() + std::min(entries_.size(), looked));
    width = std::max(width, window().font().widest(texts) + window().font().height() * 2);
    send(handle(), CB_SETDROPPEDWIDTH, static_cast<WPARAM>(width));
}

void ListView::followContent()
{
    name(); // Of the row that it floats over.
    const RECT place = window().placeOf(control());
    const int height = place.bottom - place.top;
    constexpr int edges = 6;
    send(handle(), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), std::max(1, height - edges));
    fill();
    const Long index = typed().ListIndex();
    if (send(handle(), CB_GETCURSEL) != index)
        send(handle(), CB_SETCURSEL, static_cast<WPARAM>(static_cast<LONG_PTR>(index)));
}

bool ListView::told(UINT message, WPARAM number, LPARAM, LRESULT&)
{
    if (message != WM_COMMAND || window().busy())
        return false;
    if (HIWORD(number) == CBN_SELENDOK)
        chosen_ = true;
    if (HIWORD(number) != CBN_CLOSEUP)
        return false;
    // Once the list has closed: a choice may open another dialog.
    window().later([this, chosen = std::exchange(chosen_, false)] {
        const auto index = static_cast<Long>(send(handle(), CB_GETCURSEL));
        if (chosen && index >= 0 && index < typed().ListCount())
            act([&](Acts& acts) { return acts.choose(typed(), index); });
        if (window().alive())
            followContent();
    });
    return false;
}

void ListView::press(const Keystroke& key)
{
    if (!opened())
        ViewOf::press(key);
}

void ListView::leave(Key by)
{
    chosen_ = send(handle(), CB_GETCURSEL) != typed().ListIndex();
    send(handle(), CB_SHOWDROPDOWN, FALSE);
    window().later([this, by] { press(by); });
}

LRESULT ListView::receive(UINT message, WPARAM number, LPARAM data)
{
    if (!window().alive())
        return ViewOf::receive(message, number, data);
    switch (message) {
    case WM_KEYDOWN:
    case WM_CHAR:
        if (!opened())
            break;
        // Until it closes the keys are the list's, but for Tab, with which a person leaves.
        if (const auto key = keyOf(number); message == WM_KEYDOWN && number == VK_TAB && key) {
            leave(*key);
            return 0;
        }
        return inherited(message, number, data);
    case WM_SYSKEYDOWN: // Not every system's list lets the window have Alt with F4.
        if (number == VK_F4)
            return DefWindowProcW(handle(), message, number, data);
        break;
    case WM_MOUSEWHEEL:
        return opened() ? inherited(message, number, data) : 0; // A closed list is not chosen from so.
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        flush();
        if (!act([this](Acts& acts) { return acts.focus(control()); }) || !window().alive())
            return 0;
        break;
    default:
        break;
    }
    return ViewOf::receive(message, number, data);
}

std::unique_ptr<ControlView> makeView(ViewSite& window, Control& control, HWND parent)
{
    using Maker = std::unique_ptr<ControlView> (*)(ViewSite&, Control&, HWND);
    constexpr Maker makers[] = {
        viewFor<TextBox, TextView>,
        viewFor<Frame, FrameView>,
        viewFor<Label, LabelView>,
        viewFor<CommandButton, ButtonView<CommandButton>>,
        viewFor<CheckBox, ButtonView<CheckBox>>,
        viewFor<OptionButton, ButtonView<OptionButton>>,
        viewFor<ComboBox, ListView>,
        viewFor<TabStrip, TabsView>,
        viewFor<MSFlexGrid, GridView>,
    };
    return viewBy(makers, window, control, parent);
}

} // namespace zv::win32
