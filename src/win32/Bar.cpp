#include "win32/Bar.h"

#include <algorithm>
#include <utility>

namespace zv::win32 {

namespace {

/// Letters of the text that have to fit beside the buttons; else it stands over them.
constexpr std::size_t lettersBeside = 36;

} // namespace

class Bar::Button final : public Window {
public:
    Button(Bar& bar, BarChoice choice)
        : Window(WC_BUTTONW, childStyle | WS_VISIBLE | BS_PUSHBUTTON, 0, bar.handle()), bar_(bar),
          choice_(std::move(choice)), caption_(choice_.text + u" (Alt+" + choice_.key + u")")
    {
        SetWindowTextW(handle(), wide(caption_));
    }
    char16_t key() const { return choice_.key; }
    /// Once the message has ended: what it does may take the bar away.
    void press() { bar_.site_.later(choice_.does); }
    int width() const { return bar_.site_.font().width(caption_) + 4 * bar_.margin(); }
    bool told(UINT message, WPARAM number, LPARAM, LRESULT&) override
    {
        if (message == WM_COMMAND && HIWORD(number) == BN_CLICKED)
            press();
        return false;
    }

protected:
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override
    {
        if (message == WM_GETDLGCODE)
            return DLGC_WANTALLKEYS;
        if (message == WM_CHAR)
            return 0;
        if ((message == WM_KEYDOWN || message == WM_SYSKEYDOWN) && taken(message, number))
            return DefWindowProcW(handle(), message, number, data);
        return Window::receive(message, number, data);
    }

private:
    bool taken(UINT message, WPARAM code)
    {
        if (code == VK_ESCAPE || code == VK_F6)
            bar_.site_.inStep();
        else if (code == VK_TAB && !held(VK_CONTROL) && !held(VK_MENU))
            bar_.step(*this, held(VK_SHIFT) ? -1 : 1);
        else if (code == VK_RETURN)
            press();
        else
            return bar_.site_.pressOwn(message, code);
        return true;
    }
    Bar& bar_;
    BarChoice choice_;
    String caption_;
};

Bar::Bar(ViewSite& site, HWND parent)
    : Window(ourClass(), childStyle | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, parent), site_(site),
      text_(CreateWindowExW(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE | SS_NOPREFIX, 0, 0, 0, 0, handle(),
                            nullptr, GetModuleHandleW(nullptr), nullptr))
{}

Bar::~Bar() = default;

void Bar::say(const String& text, const std::vector<BarChoice>& choices)
{
    hide();
    said_ = text;
    SetWindowTextW(text_, wide(said_));
    for (const BarChoice& each : choices)
        buttons_.push_back(std::make_unique<Button>(*this, each));
    ShowWindow(handle(), SW_SHOWNA);
    NotifyWinEvent(EVENT_SYSTEM_ALERT, text_, OBJID_CLIENT, CHILDID_SELF);
}

void Bar::hide()
{
    const bool within = focused();
    ShowWindow(handle(), SW_HIDE);
    for (auto& each : std::exchange(buttons_, {})) {
        ShowWindow(each->handle(), SW_HIDE);
        gone_.push_back(std::move(each));
    }
    site_.later([this] { gone_.clear(); });
    if (within)
        site_.inStep();
}

bool Bar::focused() const { return IsChild(handle(), GetFocus()) != 0; }

void Bar::enter() const { SetFocus(buttons_.front()->handle()); }

void Bar::step(const Button& from, int by) const
{
    const auto here = std::ranges::find(buttons_, &from, [](const auto& each) { return each.get(); });
    const auto count = static_cast<std::ptrdiff_t>(buttons_.size());
    const std::ptrdiff_t next = (here - buttons_.begin() + by + count) % count;
    SetFocus(buttons_[static_cast<std::size_t>(next)]->handle());
}

bool Bar::press(WPARAM letter)
{
    const auto found = std::ranges::find(buttons_, letter, [](const auto& each) { return each->key(); });
    if (found == buttons_.end())
        return false;
    (*found)->press();
    return true;
}

int Bar::leastWidth() const
{
    int width = margin();
    for (const auto& each : buttons_)
        width += each->width() + margin();
    return width;
}

int Bar::settle(int width)
{
    const Font& font = site_.font();
    const int line = font.height();
    const int high = 2 * line;
    const bool beside =
        leastWidth() + margin() + font.width(StringView(said_).substr(0, lettersBeside)) <= width;
    const int across = width - margin() - (beside ? leastWidth() : margin());
    const int words = font.height(said_, across);
    const int inner = beside ? std::max(words, high) : words + margin() + high;
    send(text_, WM_SETFONT, reinterpret_cast<WPARAM>(font.handle()), TRUE);
    MoveWindow(text_, margin(), margin() + (beside ? (inner - words) / 2 : 0), across, words, TRUE);
    int at = std::max(margin(), width - leastWidth() + margin()); // Of too many the last are cut.
    for (const auto& each : buttons_) {
        send(each->handle(), WM_SETFONT, reinterpret_cast<WPARAM>(font.handle()), TRUE);
        MoveWindow(each->handle(), at, margin() + inner - high, each->width(), high, TRUE);
        at += each->width() + margin();
    }
    SetWindowPos(handle(), nullptr, 0, 0, width, inner + 2 * margin(), SWP_NOZORDER | SWP_NOACTIVATE);
    return inner + 2 * margin();
}

LRESULT Bar::receive(UINT message, WPARAM number, LPARAM data)
{
    const auto device = reinterpret_cast<HDC>(number);
    switch (message) {
    case WM_ERASEBKGND: {
        RECT area{};
        GetClientRect(handle(), &area);
        FillRect(device, &area, GetSysColorBrush(COLOR_INFOBK));
        FrameRect(device, &area, GetSysColorBrush(COLOR_3DSHADOW));
        return 1;
    }
    case WM_CTLCOLORSTATIC:
        SetTextColor(device, GetSysColor(COLOR_INFOTEXT));
        SetBkColor(device, GetSysColor(COLOR_INFOBK));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK));
    case WM_CTLCOLORBTN:
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK));
    case WM_LBUTTONDOWN: // None on what lies under it.
        return 0;
    default:
        return Window::receive(message, number, data);
    }
}

} // namespace zv::win32
