#pragma once

#include "forms/Person.h"

namespace zv {

/// A person's acts simulated on the model: the rules of focus, keys and events that every desktop shares.
class Acts final : public Person {
public:
    bool focus(Control& control) override;
    bool click(Control& control) override;
    bool type(Control& control, StringView text) override;
    bool key(Control& control, Key key) override;
    bool paste(TextBox& box, StringView text) override;
    bool select(TextBox& box, Long start, Long length) override;
    bool choose(ComboBox& box, Long index) override;
    bool clickCell(MSFlexGrid& grid, Long row, Long column) override;
    bool doubleClickCell(MSFlexGrid& grid, Long row, Long column) override;
    /// The second half of a double click, soon after clickCell.
    bool clickCellAgain(MSFlexGrid& grid);
    bool scroll(MSFlexGrid& grid, Long row) override;
    bool clickTab(TabStrip& strip, Long tab) override;
    bool clickBackground(Form& form) override;
    bool close(Form& form) override;

private:
    /// Moves the focus to the control, then runs the act if the control is still accessible, then replays the
    /// keys that a handler queued with SendKeys.
    bool at(Control& control, const std::function<void()>& act);
    bool reach(Control& control, const std::function<void()>& act);
    void press(Control& control, const Keystroke& key);
    void pressSentKeys(Form& form);
    /// Handles Enter, Escape and Tab, the form's own keys.
    bool pressFormKey(Control& control, Key key);
    void pressInText(TextBox& box, const Keystroke& key);
    static void editText(TextBox& box, Key key);
    static void pressInList(ComboBox& box, const Keystroke& key);
    void pressInGrid(MSFlexGrid& grid, Key key);
    static void pressInTabs(TabStrip& strip, Key key);
    static void pressAmongOptions(OptionButton& option, Key key);
    void activate(Control& control);
    void enterCell(MSFlexGrid& grid, Long row, Long column);
    void scrollTo(MSFlexGrid& grid, Long row);
    /// Raises one event of an act, unless the handler of an earlier one has made the control inaccessible.
    template <class... A>
    void raise(Control& control, const Event<A...>& event, A... args)
    {
        if (control.accessible())
            control.form().guarded([&] { event.raise(args...); });
    }
};

} // namespace zv
