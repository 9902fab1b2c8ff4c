#include "win32/Message.h"

#include "forms/Desktop.h"
#include "runtime/Convert.h"

namespace zv::win32 {

namespace {

constexpr Integer signBits = 112;
constexpr wchar_t dialogClass[] = L"#32770";

UINT signOf(Integer flags)
{
    switch (flags & signBits) {
    case sign::critical:
        return MB_ICONERROR;
    case sign::exclamation:
        return MB_ICONWARNING;
    case sign::information:
        return MB_ICONINFORMATION;
    default:
        return 0;
    }
}

/// What the box that is coming up is told; in a thread one at a time comes up.
struct Coming {
    const std::function<void(HWND)>& shown;
    const std::function<void(HWND)>& help;
    HWND box = nullptr;
};
thread_local Coming* coming = nullptr;

/// The box's own button speaks the system's language.
LRESULT CALLBACK atWindows(int code, WPARAM number, LPARAM data)
{
    const auto window = reinterpret_cast<HWND>(number);
    wchar_t kind[std::size(dialogClass) + 1]{};
    if (code == HCBT_ACTIVATE && coming != nullptr && coming->box == nullptr &&
        GetClassNameW(window, kind, std::size(kind)) > 0 && std::wstring_view(kind) == dialogClass) {
        coming->box = window;
        for (const int button : {IDOK, IDCANCEL})
            if (GetDlgItem(window, button) != nullptr)
                SetDlgItemTextW(window, button, L"Aceptar");
        if (coming->shown)
            coming->shown(window);
    }
    return CallNextHookEx(nullptr, code, number, data);
}

LRESULT CALLBACK atKeys(int code, WPARAM number, LPARAM data)
{
    const auto& message = *reinterpret_cast<const MSG*>(data);
    if (code == MSGF_DIALOGBOX && message.message == WM_KEYDOWN && message.wParam == VK_F1 &&
        coming != nullptr && coming->help) {
        coming->help(coming->box);
        return TRUE;
    }
    return CallNextHookEx(nullptr, code, number, data);
}

/// RAII guard: this thread's hooks while a box is up.
class Hooks {
public:
    explicit Hooks(Coming& now) : before_(std::exchange(coming, &now)) {}
    Hooks(const Hooks&) = delete;
    Hooks& operator=(const Hooks&) = delete;
    ~Hooks()
    {
        UnhookWindowsHookEx(windows_);
        UnhookWindowsHookEx(keys_);
        coming = before_;
    }

private:
    Coming* before_;
    HHOOK windows_ = SetWindowsHookExW(WH_CBT, atWindows, nullptr, GetCurrentThreadId());
    HHOOK keys_ = SetWindowsHookExW(WH_MSGFILTER, atKeys, nullptr, GetCurrentThreadId());
};

} // namespace

void showMessage(HWND owner, StringView prompt, Integer flags, StringView title,
                 const std::function<void(HWND)>& shown, const std::function<void(HWND)>& help)
{
    Coming now{shown, help};
    const Hooks hooks(now);
    MessageBoxW(owner, wide(String(prompt)), wide(String(title)), MB_OK | signOf(flags));
}

bool askQuestion(HWND owner, const Question& question)
{
    constexpr int yes = 100;
    constexpr int no = 101;
    String title(static_cast<std::size_t>(GetWindowTextLengthW(owner)), u'\0');
    GetWindowTextW(owner, reinterpret_cast<wchar_t*>(title.data()), static_cast<int>(title.size()) + 1);
    const TASKDIALOG_BUTTON buttons[] = {{yes, wide(question.yes)}, {no, wide(question.no)}};
    TASKDIALOGCONFIG box{};
    box.cbSize = sizeof box;
    box.hwndParent = owner;
    box.dwFlags = TDF_ALLOW_DIALOG_CANCELLATION | TDF_POSITION_RELATIVE_TO_WINDOW;
    box.pszWindowTitle = wide(title);
    box.pszMainIcon = TD_WARNING_ICON;
    box.pszMainInstruction = wide(question.text);
    box.pszContent = wide(question.detail);
    box.cButtons = static_cast<UINT>(std::size(buttons));
    box.pButtons = buttons;
    box.nDefaultButton = no;
    int pressed = no;
    // Looked up when it is needed: the system's older controls, which a host may have loaded, lack it.
    const FARPROC address = GetProcAddress(LoadLibraryW(L"comctl32.dll"), "TaskDialogIndirect");
    const auto ask = reinterpret_cast<decltype(&TaskDialogIndirect)>(reinterpret_cast<void*>(address));
    if (ask != nullptr && SUCCEEDED(ask(&box, &pressed, nullptr, nullptr)))
        return pressed == yes;
    const String all = question.text + u"\r\n\r\n" + question.detail + u"\r\n\r\n¿" + question.yes + u"?";
    return MessageBoxW(owner, wide(Replace(all, u"&", u"")), wide(title),
                       MB_YESNO | MB_DEFBUTTON2 | MB_ICONWARNING) == IDYES;
}

} // namespace zv::win32
