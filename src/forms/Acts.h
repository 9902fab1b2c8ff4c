#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/Keys.h"

namespace zv {

class ComboBox;
class MSFlexGrid;
class TabStrip;

/// What a person does at a form. Each act first moves the focus to the control, if it is not there: LostFocus
/// of the old, then GotFocus of the new; then the act's own events. A failure of a handler ends in
/// Form::guarded. An act on what cannot be acted upon does nothing and returns false.
class Acts {
public:
    explicit Acts(Form& form) : form_(form) {}

    bool focus(Control& control);
    /// Clicks a button, an option, a tick box.
    bool click(Control& control);
    /// Types the characters at the caret, each as a key.
    bool type(Control& control, StringView text);
    bool key(Control& control, Key key);
    /// Replaces the selection as from the clipboard: no key events, cut to MaxLength, one Change.
    bool paste(TextBox& box, StringView text);
    /// Sets the selection as with the mouse; what lies outside the text is cut.
    bool select(TextBox& box, Long start, Long length);
    /// Opens the list and chooses the entry; Click comes even when it was chosen already. 381 if there is no
    /// such entry.
    bool choose(ComboBox& box, Long index);
    /// Clicks a cell: LeaveCell, EnterCell, Click. 381 if there is no such cell.
    bool clickCell(MSFlexGrid& grid, Long row, Long column);
    /// A click, and a second one soon after, which is DblClick alone.
    bool doubleClickCell(MSFlexGrid& grid, Long row, Long column);
    /// The second click alone, soon after clickCell.
    bool clickCellAgain(MSFlexGrid& grid);
    /// Scrolls until that row is the first under the heading, or the last one is seen; no event where nothing
    /// moves.
    bool scroll(MSFlexGrid& grid, Long row);
    /// Clicks tab n, counted from 1. 381 if there is none.
    bool clickTab(TabStrip& strip, Long tab);
    /// Clicks the background of the form.
    bool clickBackground();
    /// Closes the window by its frame.
    bool close();

private:
    /// Moves the focus to the control and does the act, if the control can still be acted upon then. Keys
    /// that a handler sent follow.
    bool at(Control& control, const std::function<void()>& act);
    bool reach(Control& control, const std::function<void()>& act);
    void press(Control& control, const Keystroke& key);
    void pressSentKeys();
    /// Enter, Escape and Tab, which the form answers itself.
    bool pressFormKey(Control& control, Key key);
    void pressInText(TextBox& box, const Keystroke& key);
    void editText(TextBox& box, Key key);
    void pressInList(ComboBox& box, const Keystroke& key);
    void pressInGrid(MSFlexGrid& grid, Key key);
    void pressInTabs(TabStrip& strip, Key key);
    void pressAmongOptions(OptionButton& option, Key key);
    void activate(Control& control);
    void enterCell(MSFlexGrid& grid, Long row, Long column);
    void scrollTo(MSFlexGrid& grid, Long row);
    /// One event of an act; the handler of an earlier one may have put the control out of reach.
    template <class... A>
    void raise(Control& control, const Event<A...>& event, A... args)
    {
        if (control.accessible())
            form_.guarded([&] { event.raise(args...); });
    }
    Form& form_;
};

} // namespace zv
