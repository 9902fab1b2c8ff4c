#include "forms/Acts.h"

#include "forms/ActObserver.h"
#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

#include <algorithm>

namespace zv {

bool Acts::at(Control& control, const std::function<void()>& act)
{
    const bool reached = reach(control, act);
    pressSentKeys(control.form());
    return reached;
}

bool Acts::reach(Control& control, const std::function<void()>& act)
{
    if (!control.takesFocus() || !control.accessible())
        return false;
    Form& form = control.form();
    form.moveFocus(&control, true);
    // Re-check: the LostFocus handler of the old control may have closed the form or made the target
    // inaccessible.
    const bool reachable = control.accessible();
    if (reachable)
        act();
    form.settleFocus();
    return reachable;
}

bool Acts::focus(Control& control)
{
    return tellAct({ActVerb::focus, control.form(), &control}, [&] { return at(control, [] {}); });
}

bool Acts::click(Control& control)
{
    return tellAct({ActVerb::click, control.form(), &control},
                   [&] { return at(control, [&] { activate(control); }); });
}

void Acts::activate(Control& control)
{
    if (auto* button = dynamic_cast<CommandButton*>(&control)) {
        raise(control, button->Click);
    } else if (auto* option = dynamic_cast<OptionButton*>(&control)) {
        control.form().guarded([&] { option->Value = true; });
    } else if (auto* box = dynamic_cast<CheckBox*>(&control)) {
        raise(control, box->MouseDown);
        if (box->accessible())
            control.form().guarded([&] { box->Value = static_cast<Integer>(1 - box->Value()); });
    } else if (auto* grid = dynamic_cast<MSFlexGrid*>(&control)) {
        // Keyboard equivalent of a click on the cell.
        if (grid->Row() >= 1 && grid->Row() < grid->Rows())
            raise(control, grid->Click);
    }
}

bool Acts::type(Control& control, StringView text)
{
    return tellAct({ActVerb::type, control.form(), &control, text}, [&] {
        bool reached = focus(control);
        while (reached && !text.empty())
            reached = at(control, [&, key = takeKey(text)] { press(control, key); });
        return reached;
    });
}

bool Acts::key(Control& control, Key key)
{
    return tellAct({.verb = ActVerb::key, .form = control.form(), .control = &control, .key = key},
                   [&] { return at(control, [&] { press(control, key); }); });
}

bool Acts::paste(TextBox& box, StringView text)
{
    return tellAct({ActVerb::paste, box.form(), &box, text},
                   [&] { return at(box, [&] { box.form().guarded([&] { box.replaceSelection(text); }); }); });
}

bool Acts::select(TextBox& box, Long start, Long length)
{
    return tellAct({ActVerb::select, box.form(), &box, {}, start, length}, [&] {
        return at(box, [&] {
            box.SelStart = std::max<Long>(start, 0);
            box.SelLength = std::max<Long>(length, 0);
        });
    });
}

bool Acts::choose(ComboBox& box, Long index)
{
    box.entry(index);
    return tellAct({ActVerb::choose, box.form(), &box, {}, index}, [&] {
        return at(box, [&] {
            box.ListIndex.store(index);
            raise(box, box.Click);
        });
    });
}

void Acts::enterCell(MSFlexGrid& grid, Long row, Long column)
{
    if (row == grid.Row() && column == grid.Col())
        return;
    raise(grid, grid.LeaveCell);
    if (!grid.accessible() || row >= grid.Rows() || column >= grid.Cols())
        return;
    grid.Row = row;
    grid.Col = column;
    raise(grid, grid.EnterCell);
}

bool Acts::clickCell(MSFlexGrid& grid, Long row, Long column)
{
    static_cast<void>(grid.TextMatrix(row, column));
    return tellAct({ActVerb::clickCell, grid.form(), &grid, {}, row, column}, [&] {
        return at(grid, [&] {
            enterCell(grid, row, column);
            raise(grid, grid.Click);
        });
    });
}

bool Acts::doubleClickCell(MSFlexGrid& grid, Long row, Long column)
{
    // The first click's handlers may make the grid inaccessible; the second click then lands nowhere.
    return tellAct({ActVerb::doubleClickCell, grid.form(), &grid, {}, row, column},
                   [&] { return clickCell(grid, row, column) && clickCellAgain(grid); });
}

bool Acts::clickCellAgain(MSFlexGrid& grid)
{
    return tellAct({ActVerb::doubleClickCell, grid.form(), &grid, {}, grid.Row(), grid.Col()},
                   [&] { return at(grid, [&] { raise(grid, grid.DblClick); }); });
}

bool Acts::scroll(MSFlexGrid& grid, Long row)
{
    static_cast<void>(grid.TextMatrix(row, 0));
    return tellAct({ActVerb::scroll, grid.form(), &grid, {}, row},
                   [&] { return at(grid, [&] { scrollTo(grid, row); }); });
}

void Acts::scrollTo(MSFlexGrid& grid, Long row)
{
    const Long top = std::clamp<Long>(row, 1, grid.lastTopRow());
    if (top == grid.TopRow())
        return;
    grid.TopRow.store(top);
    raise(grid, grid.Scroll);
}

bool Acts::clickTab(TabStrip& strip, Long tab)
{
    StripTab& clicked = strip.Tabs(tab);
    return tellAct({ActVerb::clickTab, strip.form(), &strip, {}, tab},
                   [&] { return at(strip, [&] { strip.form().guarded([&] { clicked.select(); }); }); });
}

bool Acts::clickBackground(Form& form)
{
    if (!form.Visible() || !form.Enabled())
        return false;
    return tellAct({ActVerb::clickBackground, form}, [&] {
        form.guarded([&form] { form.Form_Click(); });
        form.settleFocus();
        return true;
    });
}

bool Acts::close(Form& form)
{
    if (!form.Visible() || !form.Enabled())
        return false;
    return tellAct({ActVerb::close, form}, [&] {
        form.guarded([&form] { form.Unload(); });
        return true;
    });
}

} // namespace zv
