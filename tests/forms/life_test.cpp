#include "Ficha.h"

namespace zv::test {
namespace {

using Life = FormTest;

constexpr auto breaks = [](Integer*) { throw RuntimeError(7, u"rota"); };

TEST_F(Life, show_loads_opens_activates_gives_the_focus_and_returns_when_closed)
{
    screen.steps = {[&] { screen.note("paso"); }, [&] { acts.close(ficha); },
                    [&] { FAIL() << "closed already"; }};
    ficha.Show();
    EXPECT_EQ(seen(), "Load abre:Ficha Activate txtNombre.GotFocus paso Unload cierra:Ficha");
    EXPECT_FALSE(ficha.loaded());
    EXPECT_FALSE(ficha.Visible());

    screen.steps = {[&] { ficha.Hide(); }};
    ficha.when["Activate"] = [&](Integer*) { ficha.cboLista.SetFocus(); };
    ficha.Show();
    EXPECT_EQ(seen(), "Load abre:Ficha Activate cboLista.GotFocus");
    EXPECT_TRUE(ficha.loaded());
    ficha.Show();
    EXPECT_EQ(seen(), "abre:Ficha Activate") << "hidden is still loaded";
    EXPECT_EQ(numberOf([&] { ficha.Show(); }), 400);
    EXPECT_EQ(seen(), "");
    ficha.Hide();
    ficha.when["Activate"] = [&](Integer*) { acts.close(ficha); };
    screen.modals = 0;
    ficha.Show();
    EXPECT_EQ(seen(), "abre:Ficha Activate Unload cierra:Ficha");
    EXPECT_EQ(screen.modals, 0) << "nothing to wait for";
    useDesktop(nullptr);
    EXPECT_EQ(numberOf([&] { ficha.Show(); }), failure::invalidCall);
    EXPECT_FALSE(ficha.Visible());
}

TEST_F(Life, each_load_starts_from_the_design)
{
    ficha.Caption = String(u"Diseño");
    ficha.cmd(0).ToolTipText = String(u"Guardar");
    ficha.cboLista.AddItem(u"de diseño");
    ficha.msgTabla.setColWidth(1, 700);
    ficha.open();
    ficha.Caption = String(u"Otro");
    ficha.Tag = String(u"9");
    ficha.MarcaBloqueo = String(u"B");
    ficha.MousePointer = Integer{11};
    ficha.Icon = {u"x.ico"};
    ficha.txtNombre.Text = String(u"abc");
    ficha.txtNombre.TextoDoblado = String(u"abc");
    ficha.txtNombre.MaxLength = 9;
    ficha.optA.Value = true;
    ficha.chkUno.Value = Integer{1};
    ficha.cmd(1).Default = true;
    ficha.cmd(0).Enabled = false;
    ficha.fraCaja.Visible = false;
    ficha.cboLista.AddItem(u"uno");
    ficha.cboLista.ListIndex = 1;
    ficha.msgTabla.Rows = 7;
    ficha.msgTabla.setTextMatrix(6, 1, u"celda");
    ficha.msgTabla.setColWidth(1, 5);
    ficha.mstTabs.Tabs(2).select();
    ficha.mstTabs.Tabs(2).Caption = u"Cambiada";
    ficha.chkUno.ZOrder();
    acts.close(ficha);
    seen();
    ficha.Load();
    EXPECT_EQ(seen(), "Load") << "going back to the design raises nothing";
    EXPECT_EQ(ficha.Caption(), u"Diseño");
    EXPECT_EQ(ficha.Tag() + ficha.MarcaBloqueo() + ficha.Icon.file, u"");
    EXPECT_EQ(ficha.MousePointer(), 0);
    EXPECT_EQ(ficha.txtNombre.Text() + ficha.txtNombre.TextoDoblado(), u"");
    EXPECT_EQ(ficha.txtNombre.MaxLength(), 5);
    EXPECT_FALSE(ficha.optA.Value());
    EXPECT_EQ(ficha.chkUno.Value(), 0);
    EXPECT_TRUE(ficha.cmd(0).Default() && ficha.cmd(0).Enabled() && ficha.fraCaja.Visible());
    EXPECT_FALSE(ficha.cmd(1).Default());
    EXPECT_EQ(ficha.cmd(0).ToolTipText(), u"Guardar");
    EXPECT_EQ(ficha.cboLista.ListCount(), 1);
    EXPECT_EQ(ficha.cboLista.ListIndex(), -1);
    EXPECT_EQ(ficha.msgTabla.Rows(), 2);
    EXPECT_EQ(ficha.msgTabla.ColWidth(1), 700);
    EXPECT_EQ(ficha.mstTabs.SelectedItem().Index(), 1);
    EXPECT_EQ(ficha.mstTabs.Tabs(2).Caption, u"Dos");
    EXPECT_TRUE(ficha.frontToBack().empty());
    EXPECT_EQ(ficha.ActiveControl(), nullptr);
}

TEST_F(Life, a_load_that_fails_is_the_callers_and_leaves_the_form_unloaded)
{
    ficha.when["Load"] = breaks;
    EXPECT_EQ(numberOf([&] { ficha.Show(); }), 7);
    EXPECT_EQ(seen(), "Load");
    EXPECT_FALSE(ficha.loaded() || ficha.Visible());
    ficha.when["Load"] = [&](Integer*) { ficha.Unload(); };
    ficha.Show();
    EXPECT_EQ(seen(), "Load Unload cierra:Ficha") << "closed while it loaded: never shown";

    // Where a handler had called Show, that handler is left.
    Ficha other(screen, u"Otra");
    other.when["Load"] = breaks;
    ficha.when.clear();
    ficha.when["cmd(0).Click"] = [&](Integer*) {
        other.Show();
        screen.note("después");
    };
    ficha.open();
    acts.click(ficha.cmd(0));
    EXPECT_EQ(seen(), "txtNombre.LostFocus cmd(0).GotFocus cmd(0).Click Load error:7");
}

TEST_F(Life, a_handler_that_fails_ends_there_and_the_form_can_be_used)
{
    const auto disable = [&](Integer*) {
        ficha.Enabled = false;
        ficha.MousePointer = Integer{11};
        throw RuntimeError(7, u"rota");
    };
    for (const char* event : {"Activate", "txtNombre.GotFocus"})
        ficha.when[event] = disable;
    ficha.Show();
    EXPECT_EQ(seen(), "Load abre:Ficha Activate error:7 txtNombre.GotFocus error:7");
    EXPECT_TRUE(ficha.Enabled());
    EXPECT_EQ(ficha.MousePointer(), 0);
    ficha.when["txtNombre.LostFocus"] = ficha.when["cmd(0).Click"] = ficha.when["Fondo"] = disable;
    EXPECT_TRUE(acts.click(ficha.cmd(0))) << "each event is left on its own";
    EXPECT_EQ(seen(), "txtNombre.LostFocus error:7 cmd(0).GotFocus cmd(0).Click error:7");
    EXPECT_TRUE(acts.clickBackground(ficha));
    EXPECT_EQ(seen(), "Fondo error:7");
    ficha.Enabled = false;
    EXPECT_EQ(numberOf([&] { ficha.guarded([&] { disable(nullptr); }); }), 0);
    EXPECT_FALSE(ficha.Enabled()) << "it was disabled before the handler";
    ficha.Enabled = true;
    seen();

    // Events that code causes reach the statement that caused them.
    ficha.when["chkUno.Click"] = ficha.when["cboLista.GotFocus"] = breaks;
    EXPECT_EQ(numberOf([&] { ficha.chkUno.Value = Integer{1}; }), 7);
    EXPECT_EQ(numberOf([&] { ficha.cboLista.SetFocus(); }), 7);
    ficha.when["Unload"] = breaks;
    EXPECT_TRUE(acts.close(ficha));
    EXPECT_EQ(seen(), "chkUno.Click cmd(0).LostFocus cboLista.GotFocus Unload cierra:Ficha error:7");
    EXPECT_FALSE(ficha.loaded());
    ficha.Load();
    EXPECT_EQ(numberOf([&] { ficha.Unload(); }), 7) << "from code it is the caller's";
}

TEST_F(Life, unloading_raises_no_focus_events_and_is_not_entered_twice)
{
    ficha.when["Unload"] = [&](Integer*) {
        ficha.Unload();
        ficha.txtNombre.Enabled = false;
        ficha.Hide();
    };
    ficha.when["txtNombre.LostFocus"] = [&](Integer*) { ficha.Unload(); };
    ficha.open();
    EXPECT_TRUE(acts.close(ficha));
    EXPECT_EQ(seen(), "Unload cierra:Ficha");
    ficha.Unload();
    EXPECT_EQ(seen(), "");
    ficha.open();
    EXPECT_FALSE(acts.click(ficha.cmd(0))) << "the old control's LostFocus closed the form";
    EXPECT_EQ(seen(), "txtNombre.LostFocus Unload cierra:Ficha");
    EXPECT_FALSE(acts.close(ficha) || acts.clickBackground(ficha) || acts.focus(ficha.txtNombre));
}

} // namespace
} // namespace zv::test
