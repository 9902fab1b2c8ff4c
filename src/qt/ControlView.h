#pragma once

#include "forms/Acts.h"

#include <QObject>
#include <QWidget>

#include <memory>

namespace zv {

class ControlView;

/// Interface of the window towards the views in it (dependency inversion).
class ViewHost {
public:
    /// Runs a person's act, then synchronises the window with the model. False if the act could not be done.
    virtual bool act(const std::function<bool(Acts&)>& what) = 0;
    /// Re-entrancy flag: an act is running, or the window is not yet ready for one.
    virtual bool busy() const = 0;
    virtual bool alive() const = 0;
    virtual int pixels(Long twips) const = 0;
    /// Where the control stands in its parent, in pixels.
    virtual QRect placeOf(const Control& control) const = 0;
    /// Whether the window shows what the model says and nothing beyond.
    virtual bool bare() const = 0;
    /// Callback of a grid whose columns have other widths: what lies over a cell follows.
    virtual void columnsMoved() = 0;
    virtual QWidget* focusWidget() const = 0;
    /// Callback of a focus change that came from the toolkit (an assistive program, say): the form follows.
    virtual void takeFocusOver(ControlView& view) = 0;
    /// Opens the manual at this dialog's page.
    virtual void help() = 0;
    /// Keys that belong to the window, before a control gets them. True: it was one.
    virtual bool pressOwn(const QKeyEvent& event) = 0;
    /// Whether a person's click may go on to the form; the window may ask him first.
    virtual bool mayClick(const Control& control) = 0;

protected:
    ~ViewHost() = default;
};

/// View of a control (model and view): observes the model, and turns what a person does at the widget into
/// acts on the form. The model decides; a widget that went ahead is synchronised afterwards.
class ControlView : public QObject {
public:
    virtual Control& control() const = 0;
    virtual QWidget& widget() const = 0;
    /// The focus widget, which gets the keys.
    virtual QWidget& input() const { return widget(); }
    /// Parent widget for the controls of a frame.
    QWidget& inside() const { return widget(); }

    /// Observer callback: a property changed; nullptr stands for list, cells or tabs.
    void changed(const PropertyBase* property);
    void followAll();
    void followPlace();
    /// Runs a coalesced update now.
    void flush();
    /// Second pass, once every widget of the form is there: sets the name that a screen reader reads out.
    void name();

protected:
    explicit ControlView(ViewHost& window) : window_(window) {}
    /// Installs the event filter for the input's keys and focus; once, when the widget is there.
    void watch();
    /// Copies the control's content (text, value, list) from the model to the widget.
    virtual void followContent() = 0;
    /// Whether updates are coalesced: many changes may come in a row, and only the last is worth showing.
    virtual bool inBulk() const { return false; }
    /// Filter for keys that the dialogs know. True: the widget does not get it.
    virtual bool press(const Keystroke& key);
    /// Filter for any other event of the input or of another watched widget. True: the widget does not get
    /// it.
    virtual bool handle(QObject&, QEvent&) { return false; }
    /// Runs a person's act, if the window is still there, and synchronises the screen.
    bool act(const std::function<bool(Acts&)>& what);
    /// Sets what a screen reader adds to the name.
    virtual void describe(const QString& text);
    /// A click on the control, if the window lets it go on.
    void click();
    /// Callback from the event loop, dropped if the view has been destroyed by then.
    void later(const std::function<void()>& what);
    ViewHost& window() const { return window_; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool filtered(QObject& watched, QEvent& event);
    ViewHost& window_;
    bool waiting_ = false;
};

/// View of control class C by widget class W, which it owns.
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

/// Factory: the view that fits the kind of the control.
std::unique_ptr<ControlView> makeView(ViewHost& window, Control& control, QWidget& parent);

} // namespace zv
