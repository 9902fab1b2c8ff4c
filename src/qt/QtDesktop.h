#pragma once

#include "forms/Desktop.h"
#include "qt/FormWindow.h"

#include <set>

class QMessageBox;

namespace zv {

/// The dialogs in real windows. Needs a QApplication around it.
class QtDesktop : public Desktop {
public:
    QtDesktop() = default;
    ~QtDesktop() override;
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;

    void opened(Form& form) override;
    void runModal(Form& form) override;
    void closed(Form& form) override;
    void messageBox(StringView prompt, Integer flags, StringView title) override;
    void beep() override;
    void doEvents() override;
    void handlerFailed(const RuntimeError& error) override;
    Long textWidth(StringView text) override;
    void changed(PropertyOwner& owner, const PropertyBase* property) override;

    /// The window of a form that is open, or nullptr.
    FormWindow* windowOf(const Form& form) const;

protected:
    /// Lets a person read the message and press its button.
    virtual void ask(QMessageBox& box);
    /// Lets a person act until the window's form is no longer visible.
    virtual void runWindow(FormWindow& window);

private:
    void tell(int flags, StringView title, StringView text);
    QWidget* front() const;
    void forget(const Form& form);
    void followPointer(const Form& form);
    /// Deletes the windows that are gone and were opened at that depth or deeper.
    void sweep(int depth);

    /// A window and how many forms were running when it opened.
    struct Shown {
        std::unique_ptr<FormWindow> window;
        int depth;
    };
    std::vector<Shown> windows_; ///< The one opened last at the end.
    std::vector<Shown> gone_;    ///< Kept for the events of their widgets that are on their way still.
    int depth_ = 0;
    std::set<const Form*> waiting_; ///< Forms under the hourglass.
};

} // namespace zv
