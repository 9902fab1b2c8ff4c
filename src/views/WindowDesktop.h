#pragma once

#include "forms/Desktop.h"
#include "forms/Form.h"
#include "journal/Recorder.h"
#include "runtime/Convert.h"
#include "views/Deeper.h"
#include "views/DraftAid.h"

#include <algorithm>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace zv {

/// Desktop port in windows, as far as it is the same with every toolkit: which windows there are, and when
/// they go. `Window` is the toolkit's FormView.
template <class Window>
class WindowDesktop : public Desktop {
public:
    WindowDesktop() = default;
    WindowDesktop(const WindowDesktop&) = delete;
    WindowDesktop& operator=(const WindowDesktop&) = delete;

    void opened(Form& form) override
    {
        forget(form);
        std::unique_ptr<Window> window = make(form);
        auto drafts = std::make_unique<DraftAid>(form, *window, *window, trouble_);
        windows_.push_back({std::move(window), depth_, std::move(drafts)});
        if (helps() && journal::recording())
            windows_.back().drafts->offer();
        windows_.back().window->show();
    }
    void runModal(Form& form) override
    {
        Window* window = windowOf(form);
        if (window == nullptr)
            return;
        const int depth = depth_;
        {
            const Deeper deeper(depth_);
            runWindow(*window);
        }
        if (!form.Visible())
            forget(form);
        sweep(depth);
        // What has been taken note of in the other window.
        for (const Shown& each : windows_)
            each.drafts->tell();
    }
    void closed(Form& form) override { forget(form); }
    void messageBox(StringView prompt, Integer flags, StringView title) override
    {
        tell(flags, title, prompt);
    }
    void handlerFailed(const RuntimeError& error) override
    {
        tell(sign::critical, u"Error " + decimalText(error.number()),
             u"La operación no ha terminado: " + error.description());
    }
    void doEvents() override
    {
        for (const Shown& each : windows_)
            if (each.window->alive())
                each.window->inStep();
        repaint();
    }
    Long textWidth(StringView text) override
    {
        return windows_.empty() ? Desktop::textWidth(text) : windows_.back().window->textWidth(text);
    }
    void changed(PropertyOwner& owner, const PropertyBase* property) override
    {
        auto* control = dynamic_cast<Control*>(&owner);
        Form& form = control != nullptr ? control->form() : dynamic_cast<Form&>(owner);
        if (control == nullptr && property == &form.MousePointer)
            return followPointer(form);
        Window* window = windowOf(form);
        if (window == nullptr || !window->alive())
            return;
        if (control != nullptr)
            window->controlChanged(*control, property);
        else if (property == &form.Visible && !form.Visible())
            forget(form);
        else if (property != nullptr)
            window->changed(*property);
    }

    void working() override
    {
        for (const Shown& each : windows_)
            each.window->working();
    }

    /// Writes down what is typed as it is typed, and offers it again after the program has died, in a bar
    /// over the dialog, unless ZV_DIARIO=no in the environment says otherwise. For the rest of the process.
    void keepDrafts()
    {
        if (!journal::record())
            return;
        keeps_ = true;
        journal::onTrouble([this](StringView why) {
            trouble_ = String(why);
            for (const Shown& each : windows_)
                each.drafts->tell();
        });
    }
    /// Whether all that was typed in the open windows is on the disk; waits for it.
    bool keptDrafts() const
    {
        return windows_.empty() ||
               (journal::recording() && std::ranges::all_of(windows_, [](const Shown& each) {
                    return journal::recorder().sync(each.window->form());
                }));
    }

    /// Lookup: the window of an open form, or nullptr.
    Window* windowOf(const Form& form) const
    {
        const auto found = find(windows_, form);
        return found == windows_.end() ? nullptr : found->window.get();
    }

protected:
    /// A window, and the depth of nested modal forms when it opened.
    struct Shown {
        std::unique_ptr<Window> window;
        int depth = 0;
        std::unique_ptr<DraftAid> drafts;
    };

    /// Whether windows help a person beyond what the model does; stages, whose keys are to be plain, say no.
    virtual bool helps() const { return true; }
    virtual std::unique_ptr<Window> make(Form& form) = 0;
    /// Modal loop of a window; stages override it.
    virtual void runWindow(Window& window) = 0;
    virtual void tell(Integer flags, StringView title, StringView text) = 0;
    /// Lets the screen repaint. No re-entrant acts: a person's input waits until the routine in hand has
    /// ended.
    virtual void repaint() = 0;
    virtual void showPointer(bool waits) = 0;
    /// A window goes, and is no longer among `windows()`.
    virtual void leaving(Window&) {}

    /// In order of opening.
    const std::vector<Shown>& windows() const { return windows_; }
    bool waits() const { return !waiting_.empty(); }
    /// Detaches all windows, whose forms may be destroyed already, and destroys them. For destructors.
    void endAll()
    {
        if (keeps_)
            journal::onTrouble({});
        for (Shown& each : windows_) {
            each.window->end();
            gone_.push_back(std::move(each));
        }
        windows_.clear();
        sweep(0);
    }

private:
    static auto find(auto& windows, const Form& form)
    {
        return std::ranges::find_if(windows,
                                    [&](const Shown& each) { return &each.window->form() == &form; });
    }
    void forget(const Form& form)
    {
        const auto found = find(windows_, form);
        if (found == windows_.end())
            return;
        Shown ended = std::move(*found);
        windows_.erase(found);
        // Before it goes: else some systems give the keyboard to another program.
        leaving(*ended.window);
        ended.window->end();
        gone_.push_back(std::move(ended));
        followPointer(form);
    }
    /// Deferred delete: destroys the closed windows that were opened at that depth of nesting or deeper.
    void sweep(int depth)
    {
        // Children first: a window may be the owner of those opened after it.
        std::ranges::stable_sort(gone_, {}, &Shown::depth);
        while (!gone_.empty() && gone_.back().depth >= depth)
            gone_.pop_back();
    }
    void followPointer(const Form& form)
    {
        const bool waited = waits();
        if (form.MousePointer() == pointer::hourglass)
            waiting_.insert(&form);
        else
            waiting_.erase(&form);
        if (waits() != waited)
            showPointer(waits());
    }

    std::vector<Shown> windows_;
    std::vector<Shown> gone_; ///< Closed, and kept until no event for their windows can be pending.
    int depth_ = 0;
    bool keeps_ = false;
    String trouble_;                ///< Why nothing that is typed can be kept, until a person has taken note.
    std::set<const Form*> waiting_; ///< Forms that show the hourglass.
};

} // namespace zv
