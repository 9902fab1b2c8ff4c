#pragma once

#include "forms/Acts.h"

#include <QObject>
#include <QWidget>

#include <memory>

namespace zv {

class ControlView;

/// What the views of controls need of the window in which they stand.
class ViewHost {
public:
    /// Does an act of a person and brings the window in step. False if the act could not be done.
    virtual bool act(const std::function<bool(Acts&)>& what) = 0;
    /// Whether an act goes on, or the window is not yet ready for one.
    virtual bool busy() const = 0;
    virtual bool alive() const = 0;
    /// Pixels for a measure in twips.
    virtual int pixels(Long twips) const = 0;
    virtual QWidget* focusWidget() const = 0;
    /// The toolkit gave the focus to a control (for an assistive program, say): so does the form.
    virtual void takeFocusOver(ControlView& view) = 0;
    /// Opens the manual at this dialog's page.
    virtual void help() = 0;

protected:
    ~ViewHost() = default;
};

/// The widget of a control: follows the model, and hands what a person does at it to the form's acts. The
/// model decides; where the widget went ahead, it is brought back in step afterwards.
class ControlView : public QObject {
public:
    virtual Control& control() const = 0;
    virtual QWidget& widget() const = 0;
    /// The widget that has the focus and gets the keys.
    virtual QWidget& input() const { return widget(); }
    /// Where the widgets of a frame's controls stand.
    QWidget& inside() const { return widget(); }

    /// A property changed; nullptr: list, cells or tabs.
    void changed(const PropertyBase* property);
    void followAll();
    /// Does now what waits until the next pause.
    void flush();
    /// After every widget of the form is there: what a screen reader calls this one.
    virtual void name() {}

protected:
    explicit ControlView(ViewHost& window) : window_(window) {}
    /// Watches the input's keys and focus. Once, when the widget is there.
    void watch();
    /// Text, value, list: what is the control's own.
    virtual void followContent() = 0;
    /// Whether many changes may come one after the other, so that only the last is worth following.
    virtual bool inBulk() const { return false; }
    /// A key that the dialogs know. True: the widget does not get it.
    virtual bool press(const Keystroke& key);
    /// Any other event of the input or of what else is watched. True: the widget does not get it.
    virtual bool handle(QObject&, QEvent&) { return false; }
    /// Does an act of the person, if the window is still there, and brings the screen in step.
    bool act(const std::function<bool(Acts&)>& what);
    /// Calls back from the event loop, unless the view is gone then.
    void later(const std::function<void()>& what);
    ViewHost& window() const { return window_; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followPlace();
    bool filtered(QObject& watched, QEvent& event);
    ViewHost& window_;
    bool waiting_ = false;
};

/// A view of a kind of control by a kind of widget.
template <class C, class W>
class ViewOf : public ControlView {
public:
    ViewOf(ViewHost& window, C& control, QWidget& parent)
        : ControlView(window), control_(control), widget_(std::make_unique<W>(&parent))
    {}
    C& control() const final { return control_; }
    W& widget() const final { return *widget_; }

private:
    C& control_;
    std::unique_ptr<W> widget_;
};

/// The view that fits the kind of the control.
std::unique_ptr<ControlView> makeView(ViewHost& window, Control& control, QWidget& parent);

} // namespace zv
