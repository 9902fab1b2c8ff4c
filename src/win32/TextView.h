#pragma once

#include "win32/ControlView.h"

namespace zv::win32 {

/// View of a text box of one line or several. Typed characters go through the acts one by one; what the
/// window edits by itself (input method, undo, selecting with the mouse) is taken over as one paste.
class TextView final : public ViewOf<TextBox> {
public:
    TextView(ViewSite& window, TextBox& box, HWND parent);
    ~TextView() override;
    bool told(UINT message, WPARAM number, LPARAM data, LRESULT& result) override;

protected:
    void followContent() override;
    bool hasOwnKeys() const override { return true; }
    void press(const Keystroke& key) override;
    String description() const override;
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    struct Selection {
        Long start = 0;
        Long length = 0;
        bool operator==(const Selection&) const = default;
    };
    String text() const;
    Selection selection() const;
    void select(Selection selection) const;
    void takeOver();
    void paste();
    void tellLeft();
    bool edits(UINT message, WPARAM number);
    LRESULT frame(UINT message, WPARAM number, LPARAM data);
    /// What is within the edge, in the window's own coordinates.
    RECT inside() const;
    HWND left_ = nullptr; ///< Counter of the characters that are left, in the margin; or nullptr.
    int following_ = 0;   ///< Re-entrancy flag: the window is being changed from the model.
    int taking_ = 0;      ///< Re-entrancy flag: the model is being changed from the window.
    int own_ = 0;         ///< What changes comes of this box's own keys; all else is another row's text.
};

} // namespace zv::win32
