#pragma once

#include "forms/Desktop.h"
#include "win32/FormWindow.h"

#include <set>

namespace zv::win32 {

/// Desktop port in windows of the system, of the thread that calls.
class Win32Desktop : public Desktop {
public:
    Win32Desktop();
    ~Win32Desktop() override;
    Win32Desktop(const Win32Desktop&) = delete;
    Win32Desktop& operator=(const Win32Desktop&) = delete;

    void opened(Form& form) override;
    void runModal(Form& form) override;
    void closed(Form& form) override;
    void messageBox(StringView prompt, Integer flags, StringView title) override;
    void beep() override;
    void doEvents() override;
    void handlerFailed(const RuntimeError& error) override;
    Long textWidth(StringView text) override;
    void changed(PropertyOwner& owner, const PropertyBase* property) override;

    /// Lookup: the window of an open form, or nullptr.
    FormWindow* windowOf(const Form& form) const;

protected:
    /// Whether windows help a person beyond what the model does; stages say no.
    virtual bool helps() const { return true; }
    /// Modal loop of a window; stages override it.
    virtual void runWindow(FormWindow& window);
    /// Callback of a message box that has come up.
    virtual void shown(HWND) {}

private:
    void tell(Integer flags, StringView title, StringView text);
    HWND front() const;
    void forget(const Form& form);
    void uncover();
    void followPointer() const;
    /// Deferred delete: destroys the closed windows that were opened at that depth of nesting or deeper.
    void sweep(int depth);

    /// A window, the depth of nested modal forms when it opened, and the thread's other windows that it
    /// keeps from a person meanwhile.
    struct Shown {
        std::unique_ptr<FormWindow> window;
        int depth;
        std::vector<HWND> disabled;
    };
    std::vector<Shown> windows_; ///< In order of opening.
    std::vector<Shown> gone_;    ///< Closed, and kept until no message for their windows can be pending.
    int depth_ = 0;
};

} // namespace zv::win32
