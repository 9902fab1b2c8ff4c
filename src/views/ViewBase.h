#pragma once

#include "forms/Keys.h"
#include "runtime/Errors.h"
#include "views/WindowSite.h"

namespace zv {

/// View of a control (model and view), as far as it is the same on every desktop: observes the model, and
/// turns what a person does into acts on the form. The model decides; what went ahead on the screen is
/// synchronised afterwards.
class ViewBase {
public:
    ViewBase(const ViewBase&) = delete;
    ViewBase& operator=(const ViewBase&) = delete;
    virtual Control& control() const = 0;

    /// Observer callback: a property changed; nullptr stands for list, cells or tabs.
    void changed(const PropertyBase* property);
    void followAll();
    /// Copies where the control stands, and whether it is seen, from the model to the screen.
    virtual void followPlace() = 0;
    /// Runs a coalesced update now.
    void flush();

protected:
    explicit ViewBase(WindowSite& window) : base_(window) {}
    ~ViewBase() = default;
    /// Copies the control's content (text, value, list) from the model to the screen.
    virtual void followContent() = 0;
    virtual void followFont() {}
    /// Whether updates are coalesced: many changes may come in a row, and only the last is worth showing.
    virtual bool inBulk() const { return false; }
    /// Callback from the event loop, dropped if the view has been destroyed by then.
    virtual void later(const std::function<void()>& what) = 0;
    /// Runs a person's act, if the window is still there, and synchronises the screen.
    bool act(const std::function<bool(Acts&)>& what) { return base_.act(what); }
    /// A click on the control, if the window lets it go on.
    void click();
    /// A key that the dialogs know; one that clicks, if the window lets it go on.
    void pressKey(const Keystroke& key);

private:
    WindowSite& base_;
    bool waiting_ = false;
};

/// Factory: the view by the first maker that knows the kind of the control.
template <class Maker, std::size_t N, class Site, class Parent>
auto viewBy(const Maker (&makers)[N], Site& window, Control& control, Parent&& parent)
{
    for (const Maker make : makers)
        if (auto view = make(window, control, parent))
            return view;
    fail(failure::invalidCall, control.fullName());
}

} // namespace zv
