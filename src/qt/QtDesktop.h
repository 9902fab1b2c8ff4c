#pragma once

#include "qt/FormWindow.h"
#include "views/WindowDesktop.h"

class QMessageBox;

namespace zv {

/// Desktop port in real windows. Needs a QApplication around it.
class QtDesktop : public WindowDesktop<FormWindow> {
public:
    ~QtDesktop() override;

    void runModal(Form& form) override;
    void beep() override;

    /// Makes the zoom that a person sets last beyond this program's end.
    void rememberZoom() { zoom_.remember(); }
    /// Reckons with a screen of that size instead of the real one.
    void boundTo(const QSize& screen) { zoom_.boundTo(screen); }
    /// Draws windows whole, also those that are larger than the screen.
    void showWhole() { boundTo({QWIDGETSIZE_MAX, QWIDGETSIZE_MAX}); }
    /// How many messages have been shown.
    int told() const { return told_; }

protected:
    std::unique_ptr<FormWindow> make(Form& form) override;
    /// Modal loop of a message box; stages override it.
    virtual void ask(QMessageBox& box);
    void runWindow(FormWindow& window) override;

private:
    void tell(Integer flags, StringView title, StringView text) override;
    void repaint() override;
    void showPointer(bool waits) override;
    QWidget* front() const;

    int told_ = 0;
    Zoom zoom_;
};

} // namespace zv
