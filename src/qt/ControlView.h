#pragma once

#include "views/ViewBase.h"

#include <QObject>
#include <QWidget>

#include <memory>

namespace zv {

class ControlView;

/// Interface of the window towards the views in it.
class ViewSite : public WindowSite {
public:
    /// Where the control stands in its parent, in pixels.
    virtual QRect placeOf(const Control& control) const = 0;
    virtual QWidget* focusWidget() const = 0;
    /// Callback of a focus change that came from the toolkit (an assistive program, say): the form follows.
    virtual void takeFocusOver(ControlView& view) = 0;
    /// Keys that belong to the window, before a control gets them. True: it was one.
    virtual bool pressOwn(const QKeyEvent& event) = 0;

protected:
    ~ViewSite() = default;
};

/// View of a control by a widget.
class ControlView : public QObject, public ViewBase {
public:
    virtual QWidget& widget() const = 0;
    /// The focus widget, which gets the keys.
    virtual QWidget& input() const { return widget(); }
    /// Parent widget for the controls of a frame.
    QWidget& inside() const { return widget(); }

    void followPlace() override;
    /// Second pass, once every widget of the form is there: sets the name that a screen reader reads out.
    void name();

protected:
    explicit ControlView(ViewSite& window) : ViewBase(window), window_(window) {}
    /// Installs the event filter for the input's keys and focus; once, when the widget is there.
    void watch();
    /// Filter for keys that the dialogs know. True: the widget does not get it.
    virtual bool press(const Keystroke& key);
    /// Filter for any other event of the input or of another watched widget. True: the widget does not get
    /// it.
    virtual bool handle(QObject&, QEvent&) { return false; }
    /// Sets what a screen reader adds to the name.
    virtual void describe(const QString& text);
    void later(const std::function<void()>& what) override;
    ViewSite& window() const { return window_; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool filtered(QObject& watched, QEvent& event);
    ViewSite& window_;
};

/// View of control class C by widget class W, which it owns.
template <class C, class W>
class ViewOf : public ControlView {
public:
    ViewOf(ViewSite& window, C& control, QWidget& parent)
        : ControlView(window), control_(control), widget_(std::make_unique<W>(&parent))
    {}
    C& control() const final { return control_; }
    W& widget() const final { return *widget_; }

private:
    C& control_;
    std::unique_ptr<W> widget_;
};

/// Factory: the view that fits the kind of the control.
std::unique_ptr<ControlView> makeView(ViewSite& window, Control& control, QWidget& parent);

} // namespace zv
