#include "win32/TextView.h"

#include "runtime/Convert.h"
#include "views/ViewRules.h"
#include "win32/Clipboard.h"

#include <algorithm>

namespace zv::win32 {

namespace {

constexpr WPARAM unlimited = 0x7ffffffe; ///< The model limits.
constexpr WPARAM pasteCommand = 0x16;    ///< Control with V, as a character.
constexpr WPARAM selectAllCommand = 0x01;
constexpr WPARAM commands[] = {0x03, 0x18, 0x1a}; ///< Control with C, X, Z.

DWORD styleOf(const TextBox& box)
{
    const DWORD lines = ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL;
    return (box.MultiLine() ? lines : ES_AUTOHSCROLL) | (box.RightAligned() ? ES_RIGHT : ES_LEFT);
}

/// As the system keeps texts of several lines; of a box of one, as they come.
String withLines(const String& text, bool several)
{
    return several ? Replace(Replace(text, u"\r\n", u"\n"), u"\n", u"\r\n") : text;
}

} // namespace

TextView::TextView(ViewSite& window, TextBox& box, HWND parent)
    : ViewOf(window, box, WC_EDITW, styleOf(box) | WS_CLIPCHILDREN, WS_EX_CLIENTEDGE, parent)
{
    send(handle(), EM_SETLIMITTEXT, unlimited);
    if (box.MultiLine() && box.MaxLength() > 0)
        left_ = CreateWindowExW(0, WC_STATICW, L"", WS_CHILD | SS_RIGHT, 0, 0, 0, 0, handle(), nullptr,
                                GetModuleHandleW(nullptr), nullptr);
}

TextView::~TextView() = default;

String TextView::text() const
{
    String text(static_cast<std::size_t>(GetWindowTextLengthW(handle())), u'\0');
    const int length =
        GetWindowTextW(handle(), reinterpret_cast<wchar_t*>(text.data()), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

TextView::Selection TextView::selection() const
{
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(handle(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return {static_cast<Long>(start), static_cast<Long>(end - start)};
}

void TextView::select(Selection selection) const
{
    send(handle(), EM_SETSEL, static_cast<WPARAM>(selection.start),
         static_cast<LPARAM>(selection.start) + selection.length);
}

void TextView::followContent()
{
    if (taking_ != 0)
        return;
    const Deeper following(following_);
    const String& wanted = typed().Text();
    const String before = text();
    const Selection selected{typed().SelStart(), typed().SelLength()};
    if (before != wanted) {
        const TextChange change = changeBetween(before, wanted, static_cast<std::size_t>(selected.start));
        select({static_cast<Long>(change.start), static_cast<Long>(change.removed)});
        // A replacement and not the whole, which could not be undone.
        send(handle(), EM_REPLACESEL, TRUE, wide(change.inserted));
        if (own_ == 0)
            send(handle(), EM_EMPTYUNDOBUFFER);
    }
    if (selection() != selected) {
        select(selected);
        send(handle(), EM_SCROLLCARET);
    }
    tellLeft();
}

void TextView::tellLeft()
{
    if (left_ == nullptr)
        return;
    const Long most = typed().MaxLength();
    const Font& font = window().font();
    RECT area{};
    GetClientRect(handle(), &area);
    // Room for the widest number from the start, so that no line is wrapped anew while one writes.
    const int room = font.width(decimalText(most) + u" ");
    if (HIWORD(send(handle(), EM_GETMARGINS)) != room)
        send(handle(), EM_SETMARGINS, EC_RIGHTMARGIN, MAKELPARAM(0, room));
    send(left_, WM_SETFONT, reinterpret_cast<WPARAM>(font.handle()), TRUE);
    SetWindowPos(left_, nullptr, area.right - room, area.bottom - font.height(), room, font.height(),
                 SWP_NOZORDER | SWP_NOACTIVATE | (GetFocus() == handle() ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
    const String left = decimalText(most - static_cast<Long>(typed().Text().size()));
    SetWindowTextW(left_, wide(left));
    name();
}

String TextView::description() const
{
    const String said = ViewOf::description();
    if (left_ == nullptr)
        return said;
    const String left = leftInWords(typed().MaxLength() - static_cast<Long>(typed().Text().size()));
    return said.empty() ? left : said + u". " + left;
}

void TextView::takeOver()
{
    if (following_ != 0 || taking_ != 0 || window().busy() || !window().alive())
        return;
    const Deeper own(own_);
    {
        const Deeper taking(taking_);
        const String now = text();
        const Selection selected = selection();
        if (now != typed().Text()) {
            const TextChange change = changeBetween(
                typed().Text(), now, static_cast<std::size_t>(selected.start + selected.length));
            act([&](Acts& acts) {
                return acts.select(typed(), static_cast<Long>(change.start),
                                   static_cast<Long>(change.removed)) &&
                       acts.paste(typed(), change.inserted);
            });
        }
        const bool moved = selected != Selection{typed().SelStart(), typed().SelLength()};
        if (window().alive() && GetFocus() == handle() && moved)
            act([&](Acts& acts) { return acts.select(typed(), selected.start, selected.length); });
    }
    if (window().alive())
        followContent();
}

void TextView::paste()
{
    const String text = withLines(clipboardText(handle()), typed().MultiLine());
    const Deeper own(own_);
    act([&](Acts& acts) { return acts.paste(typed(), text); });
}

void TextView::press(const Keystroke& key)
{
    takeOver();
    // Up and Down belong to the window: the model knows no lines.
    const Key* named = std::get_if<Key>(&key);
    const bool between = named != nullptr && (*named == Key::Up || *named == Key::Down);
    {
        const Deeper own(own_);
        ViewOf::press(key);
    }
    if (between && typed().MultiLine() && window().alive() && window().focused(*this)) {
        inherited(WM_KEYDOWN, *named == Key::Up ? VK_UP : VK_DOWN, 0);
        takeOver();
    }
}

bool TextView::told(UINT message, WPARAM number, LPARAM, LRESULT&)
{
    if (message == WM_COMMAND && HIWORD(number) == EN_CHANGE && following_ == 0 && taking_ == 0)
        window().later([this] { takeOver(); });
    return false;
}

/// Whether it is a command that the window must not carry out by itself.
bool TextView::edits(UINT message, WPARAM number)
{
    if (message == WM_PASTE || (message == WM_CHAR && number == pasteCommand) ||
        (message == WM_KEYDOWN && number == VK_INSERT && held(VK_SHIFT))) {
        takeOver();
        paste();
        return true;
    }
    if (message != WM_CHAR || isWritten(static_cast<char16_t>(number)))
        return false;
    if (number == selectAllCommand) {
        send(handle(), EM_SETSEL, 0, -1);
        takeOver();
    }
    return std::ranges::find(commands, number) == std::end(commands);
}

RECT TextView::inside() const
{
    RECT inside{};
    GetWindowRect(handle(), &inside);
    OffsetRect(&inside, -inside.left, -inside.top);
    InflateRect(&inside, -GetSystemMetrics(SM_CXEDGE), -GetSystemMetrics(SM_CYEDGE));
    return inside;
}

/// The system writes a single line at the top of its client area: that is made as high as the line, in the
/// middle of the box.
LRESULT TextView::frame(UINT message, WPARAM number, LPARAM data)
{
    const LRESULT result = inherited(message, number, data);
    if (typed().MultiLine())
        return result;
    if (message == WM_NCCALCSIZE) {
        RECT& client = *reinterpret_cast<RECT*>(data);
        const LONG spare = client.bottom - client.top - window().font().height();
        InflateRect(&client, 0, -std::max<LONG>(0, spare / 2));
    } else if (message == WM_NCPAINT) {
        const HDC device = GetWindowDC(handle());
        RECT client{};
        GetClientRect(handle(), &client);
        RECT place{};
        GetWindowRect(handle(), &place);
        MapWindowPoints(handle(), nullptr, reinterpret_cast<POINT*>(&client), 2);
        OffsetRect(&client, -place.left, -place.top);
        ExcludeClipRect(device, client.left, client.top, client.right, client.bottom);
        const RECT around = inside();
        FillRect(device, &around,
                 GetSysColorBrush(IsWindowEnabled(handle()) != 0 ? COLOR_WINDOW : COLOR_3DFACE));
        ReleaseDC(handle(), device);
    } else if (message == WM_ENABLE) {
        RedrawWindow(handle(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
    } else if (result == HTBORDER || result == HTNOWHERE) {
        return HTCLIENT;
    }
    return result;
}

LRESULT TextView::receive(UINT message, WPARAM number, LPARAM data)
{
    if (message == WM_NCCALCSIZE || message == WM_NCPAINT || message == WM_NCHITTEST || message == WM_ENABLE)
        return frame(message, number, data);
    if (message == WM_CTLCOLORSTATIC) {
        const auto device = reinterpret_cast<HDC>(number);
        SetTextColor(device, GetSysColor(COLOR_GRAYTEXT));
        SetBkColor(device, GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    }
    if (!window().alive())
        return ViewOf::receive(message, number, data);
    if (edits(message, number))
        return 0;
    if (message == WM_LBUTTONDOWN &&
        (!act([this](Acts& acts) { return acts.focus(typed()); }) || !window().alive()))
        return 0;
    const LRESULT result = ViewOf::receive(message, number, data);
    if (!window().alive())
        return result;
    switch (message) {
    case WM_KEYDOWN:
    case WM_CHAR:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_CUT:
    case WM_CLEAR:
    case WM_UNDO:
    case EM_UNDO:
        takeOver();
        break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        tellLeft();
        break;
    default:
        break;
    }
    return result;
}

} // namespace zv::win32
