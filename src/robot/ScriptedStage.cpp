#include "robot/ScriptedStage.h"

#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

namespace zv {

namespace {

class ScriptedDesktop final : public Desktop {
public:
    explicit ScriptedDesktop(Play& play) : play_(play) {}
    void opened(Form& form) override { play_.opened(form); }
    void runModal(Form& form) override { play_.goOnWhileOpen(form); }
    void closed(Form& form) override { play_.closed(form); }
    void messageBox(StringView prompt, Integer flags, StringView title) override
    {
        play_.observe(u"mensaje " + decimalText(flags) + u" " + quoted(title) + u" " + quoted(prompt));
    }
    void beep() override { play_.observe(u"bip"); }
    void doEvents() override {}
    void handlerFailed(const RuntimeError& error) override
    {
        play_.observe(u"error " + decimalText(error.number()));
    }

private:
    Play& play_;
};

class ActingPerson final : public Person {
public:
    bool focus(Control& control) override { return Acts(control.form()).focus(control); }
    bool click(Control& control) override { return Acts(control.form()).click(control); }
    bool type(Control& control, StringView text) override { return Acts(control.form()).type(control, text); }
    bool key(Control& control, Key key) override { return Acts(control.form()).key(control, key); }
    bool paste(TextBox& box, StringView text) override { return Acts(box.form()).paste(box, text); }
    bool select(TextBox& box, Long start, Long length) override
    {
        return Acts(box.form()).select(box, start, length);
    }
    bool choose(ComboBox& box, Long index) override { return Acts(box.form()).choose(box, index); }
    bool clickCell(MSFlexGrid& grid, Long row, Long column) override
    {
        return Acts(grid.form()).clickCell(grid, row, column);
    }
    bool doubleClickCell(MSFlexGrid& grid, Long row, Long column) override
    {
        return Acts(grid.form()).doubleClickCell(grid, row, column);
    }
    bool scroll(MSFlexGrid& grid, Long row) override { return Acts(grid.form()).scroll(grid, row); }
    bool clickTab(TabStrip& strip, Long tab) override { return Acts(strip.form()).clickTab(strip, tab); }
    bool clickBackground(Form& form) override { return Acts(form).clickBackground(); }
    bool close(Form& form) override { return Acts(form).close(); }
};

} // namespace

Stage scriptedStage(Play& play)
{
    return {std::make_unique<ScriptedDesktop>(play), std::make_unique<ActingPerson>()};
}

} // namespace zv
