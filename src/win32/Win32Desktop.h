#pragma once

#include "views/WindowDesktop.h"
#include "win32/FormWindow.h"

namespace zv::win32 {

/// Desktop port in windows of the system, of the thread that calls.
class Win32Desktop : public WindowDesktop<FormWindow> {
public:
    Win32Desktop();
    ~Win32Desktop() override;

    void opened(Form& form) override;
    void runModal(Form& form) override;
    void beep() override;
    void changed(PropertyOwner& owner, const PropertyBase* property) override;

    /// Makes the zoom that a person sets last beyond this program's end.
    void rememberZoom() { zoom_.remember(); }

protected:
    std::unique_ptr<FormWindow> make(Form& form) override;
    void runWindow(FormWindow& window) override;
    /// Callback of a message box that has come up.
    virtual void shown(HWND) {}

private:
    void tell(Integer flags, StringView title, StringView text) override;
    void repaint() override;
    void showPointer(bool waits) override;
    void leaving(FormWindow& window) override;
    HWND front() const;

    Zoom zoom_;
};

} // namespace zv::win32
