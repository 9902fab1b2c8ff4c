#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/Keys.h"

namespace zv {

class ComboBox;
class MSFlexGrid;
class TabStrip;

/// Interface of a person at the dialogs, simulated on the model (`Acts`) or at real windows. Each act first
/// moves the focus to the control, if it is not there: LostFocus of the old, then GotFocus of the new; then
/// come the act's own events. A failure of a handler ends in the error boundary Form::guarded. An act on an
/// inaccessible control does nothing and returns false.
class Person {
public:
    virtual ~Person() = default;

    virtual bool focus(Control& control) = 0;
    /// Clicks a button, an option, a tick box.
    virtual bool click(Control& control) = 0;
    /// Types the characters at the caret, each as a key.
    virtual bool type(Control& control, StringView text) = 0;
    virtual bool key(Control& control, Key key) = 0;
    /// Replaces the selection as from the clipboard: no key events, cut to MaxLength, one Change.
    virtual bool paste(TextBox& box, StringView text) = 0;
    /// Sets the selection as with the mouse; what lies outside the text is cut.
    virtual bool select(TextBox& box, Long start, Long length) = 0;
    /// Opens the list and chooses the entry; Click comes even when it was chosen already. 381 if there is no
    /// such entry.
    virtual bool choose(ComboBox& box, Long index) = 0;
    /// Clicks a cell: LeaveCell, EnterCell, Click. 381 if there is no such cell.
    virtual bool clickCell(MSFlexGrid& grid, Long row, Long column) = 0;
    /// A click, and a second one soon after, which is DblClick alone.
    virtual bool doubleClickCell(MSFlexGrid& grid, Long row, Long column) = 0;
    /// Scrolls until that row is the first under the heading, or the last one is visible; no event where
    /// nothing moves.
    virtual bool scroll(MSFlexGrid& grid, Long row) = 0;
    /// Clicks tab n, counted from 1. 381 if there is none.
    virtual bool clickTab(TabStrip& strip, Long tab) = 0;
    virtual bool clickBackground(Form& form) = 0;
    /// Closes the window by its frame.
    virtual bool close(Form& form) = 0;
};

} // namespace zv
