#include "win32/DraftView.h"

#include "runtime/Convert.h"
#include "views/Columns.h"
#include "win32/Accessible.h"
#include "win32/Clipboard.h"
#include "win32/Window.h"

#include <algorithm>

namespace zv::win32 {

namespace {

constexpr DWORD topStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN;
constexpr int copyButton = 100;
constexpr int letters = 65; ///< Size of the window, in widths of two letters and heights of a line.
constexpr int lines = 32;

/// In one line, as a table shows it.
String flat(const String& text) { return Replace(Replace(text, u"\r\n", u" "), u"\n", u" "); }

/// RAII guard: no keys nor clicks for that window. It ends before the window over it goes: else the system
/// gives the keyboard to another program.
class Disabled {
public:
    explicit Disabled(HWND window) : window_(window) { EnableWindow(window_, FALSE); }
    Disabled(const Disabled&) = delete;
    Disabled& operator=(const Disabled&) = delete;
    ~Disabled() { EnableWindow(window_, TRUE); }

private:
    HWND window_;
};

class DraftWindow final : public Window {
public:
    DraftWindow(HWND owner, const Font& font, const String& heading, const std::vector<DraftRow>& rows)
        : Window(ourClass(), topStyle, WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, owner), owner_(owner),
          font_(font.narrowed(100)), rows_(rows), said_(heading),
          heading_(child(WC_STATICW, SS_NOPREFIX, 0, 0)),
          table_(child(WC_LISTVIEWW, LVS_REPORT | LVS_SHOWSELALWAYS | WS_TABSTOP | WS_BORDER, 0, 0)),
          whole_(child(WC_EDITW, ES_MULTILINE | ES_READONLY | WS_VSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE, 0)),
          copy_(child(WC_BUTTONW, BS_PUSHBUTTON | WS_TABSTOP, 0, copyButton)),
          close_(child(WC_BUTTONW, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, IDCANCEL))
    {
        SetWindowTextW(handle(), wide(String(draftTitle)));
        SetWindowTextW(heading_, wide(said_));
        SetWindowTextW(copy_, L"Co&piar");
        SetWindowTextW(close_, L"&Cerrar");
        tellName(table_, String(draftTitle), {});
        fill();
        place();
    }

    void run()
    {
        ShowWindow(handle(), SW_SHOW);
        const Disabled owner(owner_);
        SetFocus(table_);
        MSG message{};
        while (!done_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
            if (IsDialogMessageW(handle(), &message) == 0) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            rethrowHeld();
        }
        if (message.message == WM_QUIT)
            PostQuitMessage(static_cast<int>(message.wParam));
    }

protected:
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override
    {
        switch (message) {
        case WM_CLOSE:
            done_ = true;
            return 0;
        case WM_SIZE:
            layOut();
            return 0;
        case WM_COMMAND:
            if (LOWORD(number) == copyButton)
                copy();
            done_ = done_ || LOWORD(number) == IDCANCEL || LOWORD(number) == IDOK;
            return 0;
        case WM_NOTIFY:
            if (reinterpret_cast<const NMHDR*>(data)->code == static_cast<UINT>(LVN_ITEMCHANGED))
                tellWhole();
            return 0;
        default:
            return Window::receive(message, number, data);
        }
    }

private:
    HWND child(const wchar_t* kind, DWORD style, DWORD extended, int number) const
    {
        const HWND made = CreateWindowExW(extended, kind, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                                          handle(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(number)),
                                          GetModuleHandleW(nullptr), nullptr);
        send(made, WM_SETFONT, reinterpret_cast<WPARAM>(font_.handle()), FALSE);
        return made;
    }
    /// As the table shows it.
    String shown(const DraftColumn& column, const DraftRow& row) const
    {
        const String& text = row.*column.text;
        return column.value && text.empty() ? String(emptyValue) : flat(text);
    }
    void fill()
    {
        send(table_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
        for (const DraftColumn& each : draftColumns)
            if (std::ranges::any_of(rows_, [&](const DraftRow& row) { return !(row.*each.text).empty(); }))
                columns_.push_back(&each);
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            String title(columns_[column]->title);
            LVCOLUMNW head{};
            head.mask = LVCF_TEXT;
            head.pszText = reinterpret_cast<wchar_t*>(title.data());
            send(table_, LVM_INSERTCOLUMNW, column, &head);
        }
        for (std::size_t row = 0; row < rows_.size(); ++row)
            for (std::size_t column = 0; column < columns_.size(); ++column) {
                String text = shown(*columns_[column], rows_[row]);
                LVITEMW cell{};
                cell.mask = LVIF_TEXT;
                cell.iItem = static_cast<int>(row);
                cell.iSubItem = static_cast<int>(column);
                cell.pszText = reinterpret_cast<wchar_t*>(text.data());
                send(table_, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMTEXTW, column == 0 ? 0 : row, &cell);
            }
        measureColumns();
        LVITEMW first{};
        first.state = first.stateMask = LVIS_FOCUSED | LVIS_SELECTED;
        send(table_, LVM_SETITEMSTATE, 0, &first);
    }
    void place()
    {
        const RECT work = workAreaOf(owner_);
        const int width = std::min<int>(font_.width(u"nn") * letters, (work.right - work.left) * 9 / 10);
        const int height = std::min<int>(font_.height() * lines, (work.bottom - work.top) * 9 / 10);
        SetWindowPos(handle(), nullptr, (work.left + work.right - width) / 2,
                     (work.top + work.bottom - height) / 2, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    void layOut() const
    {
        RECT inside{};
        GetClientRect(handle(), &inside);
        const int line = font_.height();
        const int gap = line / 2;
        const int across = inside.right - 2 * gap;
        const int button = font_.width(u"Cerrar") * 2;
        const int foot = inside.bottom - gap - 2 * line;
        const int text = foot - gap - 5 * line;
        const int heading = font_.height(said_, across);
        const int top = 2 * gap + heading;
        MoveWindow(heading_, gap, gap, across, heading, TRUE);
        MoveWindow(table_, gap, top, across, std::max(0, text - gap - top), TRUE);
        MoveWindow(whole_, gap, text, across, 5 * line, TRUE);
        MoveWindow(copy_, inside.right - 2 * (button + gap), foot, button, 2 * line, TRUE);
        MoveWindow(close_, inside.right - button - gap, foot, button, 2 * line, TRUE);
        followColumns();
    }
    void measureColumns()
    {
        const int letter = font_.width(u"n");
        for (const DraftColumn* each : columns_) {
            std::vector<String> texts{String(each->title)};
            for (std::size_t row = 0; row < std::min<std::size_t>(rows_.size(), measuredRows); ++row)
                texts.push_back(shown(*each, rows_[row]));
            const std::vector<StringView> views(texts.begin(), texts.end());
            needs_.push_back(
                {font_.widest(views) + 3 * letter, font_.width(each->title) + 3 * letter, 12 * letter});
        }
    }
    void followColumns() const
    {
        RECT inside{};
        GetClientRect(table_, &inside);
        const std::vector<int> widths = columnsIn(needs_, inside.right);
        for (std::size_t column = 0; column < widths.size(); ++column)
            send(table_, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(widths[column], 0));
    }
    std::vector<std::size_t> chosen() const
    {
        std::vector<std::size_t> all;
        LRESULT row = -1;
        while ((row = send(table_, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED)) >= 0)
            all.push_back(static_cast<std::size_t>(row));
        return all;
    }
    String drafts() const
    {
        String text;
        for (const std::size_t row : chosen())
            text += (text.empty() ? u"" : u"\r\n") + rows_.at(row).draft;
        return text;
    }
    void tellWhole() const { SetWindowTextW(whole_, wide(drafts())); }
    void copy() const { putOnClipboard(handle(), drafts()); }

    HWND owner_;
    const Font font_; ///< Its own: the owner's may change meanwhile, with the system's.
    const std::vector<DraftRow>& rows_;
    const String& said_;                      ///< The heading.
    std::vector<const DraftColumn*> columns_; ///< Those in which there is something.
    std::vector<ColumnNeed> needs_;           ///< Of those.
    bool done_ = false;
    HWND heading_;
    HWND table_;
    HWND whole_; ///< The draft of the chosen lines, as it stands.
    HWND copy_;
    HWND close_;
};

} // namespace

void showDraft(HWND owner, const Font& font, const String& heading, const std::vector<DraftRow>& rows)
{
    DraftWindow(owner, font, heading, rows).run();
}

} // namespace zv::win32
