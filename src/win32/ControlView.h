#pragma once

#include "forms/Acts.h"
#include "win32/Win32Keys.h"
#include "win32/Window.h"

#include <utility>

namespace zv::win32 {

class ControlView;

/// Interface of the window towards the views in it (dependency inversion).
class ViewHost {
public:
    /// Runs a person's act, then synchronises the window with the model. False if the act could not be done.
    virtual bool act(const std::function<bool(Acts&)>& what) = 0;
    /// Re-entrancy flag: an act is running, or the window is not yet ready for one.
    virtual bool busy() const = 0;
    /// RAII guard: what the system tells while it lives is not a person's doing.
    virtual Deeper ownDoing() = 0;
    virtual bool alive() const = 0;
    virtual int pixels(Long twips) const = 0;
    /// Where the control stands in its parent, in pixels.
    virtual RECT placeOf(const Control& control) const = 0;
    virtual const Font& font() const = 0;
    /// Whether the window shows what the model says and nothing beyond.
    virtual bool bare() const = 0;
    /// Callback of a grid whose columns have other widths: what lies over a cell follows.
    virtual void columnsMoved() = 0;
    /// Height of the rows of the form's grid, in pixels, which the system asks for before there is the grid.
    virtual int rowHeight() const = 0;
    /// Whether the view's control is the form's active one, in an active window.
    virtual bool focused(const ControlView& view) const = 0;
    /// Synchronises what is shown, and the focus, with the model.
    virtual void inStep() = 0;
    /// Callback of a focus change that came from the system (an assistive program, say): the form follows.
    virtual void takeFocusOver(ControlView& view) = 0;
    /// Sets the tip of a control's window.
    virtual void tip(HWND window, const String& text) = 0;
    /// Opens the help at this dialog's page.
    virtual void help() = 0;
    /// Runs it when the message in hand has ended, if the window is still there.
    virtual void later(std::function<void()> what) = 0;

protected:
    ~ViewHost() = default;
};

/// Styles that each control's window has.
inline constexpr DWORD childStyle = WS_CHILD | WS_CLIPSIBLINGS;

/// View of a control (model and view): observes the model, and turns what a person does at the window into
/// acts on the form. The model decides; a window that went ahead is synchronised afterwards.
class ControlView : public Window {
public:
    Control& control() const { return control_; }

    /// Observer callback: a property changed; nullptr stands for list, cells or tabs.
    void changed(const PropertyBase* property);
    void followAll();
    void followPlace();
    /// Runs a coalesced update now.
    void flush();
    /// Sets the name and description that a screen reader reads out.
    void name();
    /// The window's height, which is not that of the place for a list that opens.
    virtual int heightIn(const RECT& place) const { return place.bottom - place.top; }

protected:
    ControlView(ViewHost& window, Control& control, const wchar_t* kind, DWORD style, DWORD extended,
                HWND parent);
    /// Copies the control's content (text, value, list) from the model to the window.
    virtual void followContent() = 0;
    /// Whether updates are coalesced: many changes may come in a row, and only the last is worth showing.
    virtual bool inBulk() const { return false; }
    virtual void press(const Keystroke& key);
    /// Whether the window itself gets keys that are none of the dialogs'.
    virtual bool hasOwnKeys() const { return false; }
    /// What a screen reader adds to the name.
    virtual String description() const;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;
    /// Runs a person's act, if the window is still there, and synchronises the screen.
    bool act(const std::function<bool(Acts&)>& what) { return window_.act(what); }
    bool click();
    void show(const String& text);
    ViewHost& window() const { return window_; }

private:
    /// Whether it is, and all that it stands in.
    bool enabled() const;
    /// Whether the message was a key that the dialogs know.
    bool keyed(UINT message, WPARAM number);
    ViewHost& window_;
    Control& control_;
    Characters characters_;
    String shown_;
    std::pair<String, String> told_; ///< Name and description, as screen readers were told last.
    bool waiting_ = false;
};

/// View of control class C.
template <class C>
class ViewOf : public ControlView {
public:
    ViewOf(ViewHost& window, C& control, const wchar_t* kind, DWORD style, DWORD extended, HWND parent)
        : ControlView(window, control, kind, style, extended, parent), typed_(control)
    {}
    C& typed() const { return typed_; }

private:
    C& typed_;
};

/// Factory: the view that fits the kind of the control.
std::unique_ptr<ControlView> makeView(ViewHost& window, Control& control, HWND parent);

} // namespace zv::win32
