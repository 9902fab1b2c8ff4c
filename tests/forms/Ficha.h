#pragma once

#include "forms/Acts.h"
#include "forms/ComboBox.h"
#include "forms/Desktop.h"
#include "forms/Layout.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

#include "data/NumberOf.h"

#include <utility>

namespace zv::test {

/// A desktop that writes down what happens. Show returns, with the form still open, when the steps are used
/// up.
struct FakeDesktop : Desktop {
    FakeDesktop() { useDesktop(this); }
    ~FakeDesktop() override
    {
        useDesktop(nullptr);
        sentKeys().clear();
    }
    void note(const std::string& what) { log += (log.empty() ? "" : " ") + what; }
    /// What was seen since the last time.
    std::string seen() { return std::exchange(log, {}); }

    void opened(Form& form) override { note("abre:" + toUtf8(form.Name())); }
    void closed(Form& form) override { note("cierra:" + toUtf8(form.Name())); }
    void messageBox(StringView prompt, Integer flags, StringView title) override
    {
        note(toUtf8(title) + ":" + std::to_string(flags) + ":" + toUtf8(prompt));
    }
    void beep() override { note("bip"); }
    void doEvents() override { note("respiro"); }
    void handlerFailed(const RuntimeError& error) override
    {
        note("error:" + std::to_string(error.number()));
    }
    void runModal(Form& form) override
    {
        ++modals;
        while (form.Visible() && !steps.empty()) {
            const auto step = std::move(steps.front());
            steps.erase(steps.begin());
            step();
        }
    }
    std::vector<std::function<void()>> steps;
    std::string log;
    int modals = 0;
};

/// A form with a control of each kind. Every event is noted as "name.event" and then does what a test asked
/// for.
class Ficha final : public Form {
public:
    explicit Ficha(FakeDesktop& screen, StringView name = u"Ficha") : Form(name), screen_(screen)
    {
        txtNombre.MaxLength = 5;
        txtNotas.MultiLine = true;
        for (auto* box : {&txtNombre, &txtNotas}) {
            watch(*box, "Change", box->Change);
            box->KeyDown.bind([this, box](Integer& code) { happen(*box, "KeyDown", &code); });
            box->KeyPress.bind([this, box](Integer& ascii) { happen(*box, "KeyPress", &ascii); });
        }
        watch(chkUno, "MouseDown", chkUno.MouseDown);
        watch(chkUno, "Click", chkUno.Click);
        for (auto* option : {&optA, &optB, &optC})
            watch(*option, "Click", option->Click);
        watch(cboLista, "Click", cboLista.Click);
        watch(msgTabla, "Click", msgTabla.Click);
        watch(msgTabla, "DblClick", msgTabla.DblClick);
        watch(msgTabla, "EnterCell", msgTabla.EnterCell);
        watch(msgTabla, "LeaveCell", msgTabla.LeaveCell);
        watch(msgTabla, "Scroll", msgTabla.Scroll);
        mstTabs.addTab(u"Uno");
        mstTabs.addTab(u"Dos", u"Segunda");
        watch(mstTabs, "Click", mstTabs.Click);
        for (auto& button : cmd)
            watch(button, "Click", button.Click);
        for (Control* control : Controls) {
            watch(*control, "GotFocus", control->GotFocus);
            watch(*control, "LostFocus", control->LostFocus);
        }
        cmd(0).Default = true;
        cmd(1).Cancel = true;
    }

    Label lblNombre{*this, u"lblNombre"};
    TextBox txtNombre{*this, u"txtNombre"};
    TextBox txtNotas{*this, u"txtNotas"};
    CheckBox chkUno{*this, u"chkUno"};
    Frame fraCaja{*this, u"fraCaja"};
    OptionButton optA{fraCaja, u"optA"};
    OptionButton optB{fraCaja, u"optB"};
    OptionButton optC{*this, u"optC"};
    ComboBox cboLista{*this, u"cboLista"};
    MSFlexGrid msgTabla{*this, u"msgTabla"};
    TabStrip mstTabs{*this, u"mstTabs"};
    ControlArray<CommandButton, 2> cmd{*this, u"cmd"};

    /// What a test wants done when an event comes.
    std::map<std::string, std::function<void(Integer*)>> when;
    /// Shows the form and forgets what was seen of that.
    Ficha& open()
    {
        Show();
        screen_.seen();
        return *this;
    }

private:
    void happen(const std::string& what, Integer* argument = nullptr)
    {
        screen_.note(what);
        if (const auto found = when.find(what); found != when.end())
            found->second(argument);
    }
    void happen(const Control& control, const char* event, Integer* argument = nullptr)
    {
        happen(toUtf8(control.fullName()) + "." + event, argument);
    }
    void watch(Control& control, const char* name, Event<>& event)
    {
        event.bind([this, &control, name] { happen(control, name); });
    }
    void Form_Load() override { happen("Load"); }
    void Form_Activate() override { happen("Activate"); }
    void Form_Click() override { happen("Fondo"); }
    void Form_Unload() override { happen("Unload"); }
    FakeDesktop& screen_;
};

struct FormTest : testing::Test {
    FakeDesktop screen;
    Ficha ficha{screen};
    Acts acts;
    std::string seen() { return screen.seen(); }
};

} // namespace zv::test
