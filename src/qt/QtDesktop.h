#pragma once

#include "forms/Desktop.h"
#include "qt/DraftAid.h"
#include "qt/FormWindow.h"

#include <set>

class QMessageBox;

namespace zv {

/// Desktop port in real windows. Needs a QApplication around it.
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
    void working() override;
    void handlerFailed(const RuntimeError& error) override;
    Long textWidth(StringView text) override;
    void changed(PropertyOwner& owner, const PropertyBase* property) override;

    /// Makes the zoom that a person sets last beyond this program's end.
    void rememberZoom() { zoom_.remember(); }
    /// Reckons with a screen of that size instead of the real one.
    void boundTo(const QSize& screen) { zoom_.boundTo(screen); }
    /// Draws windows whole, also those that are larger than the screen.
    void showWhole() { boundTo({QWIDGETSIZE_MAX, QWIDGETSIZE_MAX}); }
    /// Writes down what is typed as it is typed, and offers it again after the program has died, in a bar
    /// over the dialog, unless ZV_DIARIO=no in the environment says otherwise. For the rest of the process.
    void keepDrafts();
    /// Whether all that was typed in the open windows is on the disk; waits for it.
    bool keptDrafts() const;
    /// How many messages have been shown.
    int told() const { return told_; }
    /// Lookup: the window of an open form, or nullptr.
    FormWindow* windowOf(const Form& form) const;

protected:
    /// Whether windows help a person beyond what the model does; stages, whose keys are to be plain, say no.
    virtual bool helps() const { return true; }
    /// Modal loop of a message box; stages override it.
    virtual void ask(QMessageBox& box);
    /// Modal loop of a window; stages override it.
    virtual void runWindow(FormWindow& window);

private:
    void tell(int flags, StringView title, StringView text);
    QWidget* front() const;
    void forget(const Form& form);
    void followPointer(const Form& form);
    /// Deferred delete: destroys the closed windows that were opened at that depth of nesting or deeper.
    void sweep(int depth);

    /// A window, and the depth of nested modal forms when it opened.
    struct Shown {
        std::unique_ptr<FormWindow> window;
        int depth;
        std::unique_ptr<DraftAid> drafts;
    };
    std::vector<Shown> windows_; ///< In order of opening.
    std::vector<Shown> gone_;    ///< Closed, and kept until no event for their widgets can be pending.
    int depth_ = 0;
    int told_ = 0;
    bool keeps_ = false;
    QString trouble_; ///< Why nothing that is typed can be kept, until a person has taken note.
    Zoom zoom_;
    std::set<const Form*> waiting_; ///< Forms that show the hourglass.
};

} // namespace zv
