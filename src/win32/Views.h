#pragma once

#include "forms/ComboBox.h"
#include "forms/TabStrip.h"
#include "win32/ControlView.h"

namespace zv::win32 {

/// View of a label. The sign of a mandatory field is drawn behind the caption, and said to screen readers.
class LabelView final : public ViewOf<Label> {
public:
    LabelView(ViewSite& window, Label& label, HWND parent);

protected:
    void followContent() override;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    void paint();
    Font close_; ///< Letters that stand closer, where the caption is wider than its place.
    bool fits_ = true;
};

/// View of a frame: one with a border and a caption, or one that only groups.
class FrameView final : public ViewOf<Frame> {
public:
    FrameView(ViewSite& window, Frame& frame, HWND parent);

protected:
    void followContent() override;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    void paint();
};

/// View of what is clicked and has a caption: a button, a tick box, an option. The model alone ticks it.
template <class C>
class ButtonView final : public ViewOf<C> {
public:
    ButtonView(ViewSite& window, C& control, HWND parent);
    bool told(UINT message, WPARAM number, LPARAM data, LRESULT& result) override;

protected:
    void followContent() override;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;
};

/// View of a tab strip: the tabs over a pane, on which the frames of its tabs stand.
class TabsView final : public ViewOf<TabStrip> {
public:
    TabsView(ViewSite& window, TabStrip& strip, HWND parent);
    bool told(UINT message, WPARAM number, LPARAM data, LRESULT& result) override;

protected:
    void followContent() override;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    void fillPane() const;
};

/// View of a drop-down list.
class ListView final : public ViewOf<ComboBox> {
public:
    ListView(ViewSite& window, ComboBox& box, HWND parent);
    bool told(UINT message, WPARAM number, LPARAM data, LRESULT& result) override;
    int heightIn(const RECT& place) const override;

protected:
    void followContent() override;
    bool inBulk() const override { return true; }
    bool hasOwnKeys() const override { return true; }
    void press(const Keystroke& key) override;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    void fill();
    /// With the entry at hand, as a list of the system lets a person go on.
    void leave(Key by);
    bool opened() const { return send(handle(), CB_GETDROPPEDSTATE) != 0; }
    std::vector<String> entries_; ///< Those in the window.
    bool chosen_ = false;         ///< The list is closing upon a choice.
};

} // namespace zv::win32
