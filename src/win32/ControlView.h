#pragma once

#include "views/ViewBase.h"
#include "win32/Win32Keys.h"
#include "win32/Window.h"

#include <utility>

namespace zv::win32 {

class ControlView;

/// Interface of the window towards the views in it.
class ViewSite : public WindowSite {
public:
    /// Where the control stands in its parent, in pixels.
    virtual RECT placeOf(const Control& control) const = 0;
    virtual const Font& font() const = 0;
    /// Height of the rows of the form's grid, in pixels, which the system asks for before there is the grid.
    virtual int rowHeight() const = 0;
    /// Whether the view's control is the form's active one, in an active window.
    virtual bool focused(const ControlView& view) const = 0;
    /// Callback of a focus change that came from the system (an assistive program, say): the form follows.
    virtual void takeFocusOver(ControlView& view) = 0;
    /// Sets the tip of a control's window.
    virtual void tip(HWND window, const String& text) = 0;
    /// A key that belongs to the window, before a control gets it. True: it was one.
    virtual bool pressOwn(UINT message, WPARAM code) = 0;
    /// A character that means more than itself. True: it did.
    virtual bool typeOwn(const String& character) = 0;
    /// Runs it when the message in hand has ended, if the window is still there.
    virtual void later(std::function<void()> what) = 0;

protected:
    ~ViewSite() = default;
};

/// Styles that each control's window has.
inline constexpr DWORD childStyle = WS_CHILD | WS_CLIPSIBLINGS;

/// View of a control by a window of the system.
class ControlView : public Window, public ViewBase {
public:
    Control& control() const final { return control_; }

    void followPlace() override;
    /// Sets the name and description that a screen reader reads out.
    void name();
    /// The window's height, which is not that of the place for a list that opens.
    virtual int heightIn(const RECT& place) const { return place.bottom - place.top; }

protected:
    ControlView(ViewSite& window, Control& control, const wchar_t* kind, DWORD style, DWORD extended,
                HWND parent);
    virtual void press(const Keystroke& key);
    /// Whether the window itself gets keys that are none of the dialogs'.
    virtual bool hasOwnKeys() const { return false; }
    /// What a screen reader adds to the name.
    virtual String description() const;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;
    void followFont() override;
    void later(const std::function<void()>& what) override { window_.later(what); }
    void show(const String& text);
    ViewSite& window() const { return window_; }

private:
    /// Whether it is, and all that it stands in.
    bool enabled() const;
    /// Whether the message was a key that the dialogs know.
    bool keyed(UINT message, WPARAM number);
    ViewSite& window_;
    Control& control_;
    Characters characters_;
    String shown_;
    std::pair<String, String> told_; ///< Name and description, as screen readers were told last.
};

/// View of control class C.
template <class C>
class ViewOf : public ControlView {
public:
    ViewOf(ViewSite& window, C& control, const wchar_t* kind, DWORD style, DWORD extended, HWND parent)
        : ControlView(window, control, kind, style, extended, parent), typed_(control)
    {}
    C& typed() const { return typed_; }

private:
    C& typed_;
};

/// Factory: the view that fits the kind of the control.
std::unique_ptr<ControlView> makeView(ViewSite& window, Control& control, HWND parent);

} // namespace zv::win32
