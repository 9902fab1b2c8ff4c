#include "Ficha.h"

namespace zv::test {
namespace {

struct ActsTest : FormTest {
    ActsTest()
    {
        ficha.open();
        for (const char16_t* entry : {u"Ávila", u"burgos", u"Bilbao", u"Cádiz"})
            ficha.cboLista.AddItem(entry);
        ficha.msgTabla.Height = 240 * 5;
        ficha.msgTabla.Rows = 10;
    }
    /// Text with the caret, or the selection in brackets.
    static std::string shown(const TextBox& box)
    {
        String text = box.Text();
        const auto start = static_cast<std::size_t>(box.SelStart());
        const auto length = static_cast<std::size_t>(box.SelLength());
        if (length > 0)
            text.insert(start + length, u"]");
        return toUtf8(text.insert(start, length > 0 ? u"[" : u"|"));
    }
    /// Focus on a control, and forgets what was seen of that.
    void stand(Control& control)
    {
        EXPECT_TRUE(acts.focus(control));
        seen();
    }
};

TEST_F(ActsTest, an_act_moves_the_focus_first_and_only_where_it_is_not_yet)
{
    EXPECT_TRUE(acts.click(ficha.chkUno));
    EXPECT_EQ(seen(), "txtNombre.LostFocus chkUno.GotFocus chkUno.MouseDown chkUno.Click");
    EXPECT_EQ(ficha.chkUno.Value(), 1);
    EXPECT_TRUE(acts.click(ficha.chkUno));
    EXPECT_EQ(seen(), "chkUno.MouseDown chkUno.Click");
    EXPECT_TRUE(acts.click(ficha.optA));
    EXPECT_EQ(seen(), "chkUno.LostFocus optA.GotFocus optA.Click");
    EXPECT_TRUE(acts.click(ficha.optA));
    EXPECT_EQ(seen(), "") << "chosen already";
    EXPECT_TRUE(acts.clickBackground(ficha));
    EXPECT_EQ(seen(), "Fondo");
    EXPECT_EQ(ficha.ActiveControl(), &ficha.optA);
    ficha.cmd(0).Value = true;
    EXPECT_EQ(seen(), "cmd(0).Click");
    EXPECT_EQ(ficha.ActiveControl(), &ficha.optA);
    EXPECT_FALSE(ficha.cmd(0).Value());
}

TEST_F(ActsTest, what_is_disabled_or_hidden_or_within_such_cannot_be_acted_upon)
{
    Property<bool>* const ways[] = {&ficha.optA.Enabled, &ficha.optA.Visible, &ficha.fraCaja.Enabled,
                                    &ficha.fraCaja.Visible, &ficha.Enabled};
    for (Property<bool>* way : ways) {
        *way = false;
        EXPECT_FALSE(acts.click(ficha.optA) || acts.focus(ficha.optA) || acts.key(ficha.optA, Key::Down));
        *way = true;
    }
    EXPECT_FALSE(acts.focus(ficha.lblNombre) || acts.type(ficha.lblNombre, u" ") ||
                 acts.click(ficha.fraCaja));
    ficha.Enabled = false;
    EXPECT_FALSE(acts.close(ficha) || acts.clickBackground(ficha) || acts.type(ficha.txtNombre, u"a"));
    ficha.Enabled = true;
    EXPECT_EQ(seen(), "");
    ficha.when["txtNombre.LostFocus"] = [&](Integer*) { ficha.cmd(0).Enabled = false; };
    EXPECT_FALSE(acts.click(ficha.cmd(0))) << "out of reach since the focus left the old control";
    EXPECT_EQ(seen(), "txtNombre.LostFocus txtNombre.GotFocus") << "and the focus settles";
}

TEST_F(ActsTest, the_focus_settles_when_its_control_goes_and_nothing_follows_a_closed_form)
{
    stand(ficha.optC);
    ficha.when["optC.Click"] = [&](Integer*) { ficha.optC.Visible = false; };
    acts.click(ficha.optC);
    EXPECT_EQ(seen(), "optC.Click optC.LostFocus cboLista.GotFocus");
    ficha.when["chkUno.MouseDown"] = [&](Integer*) { ficha.chkUno.Enabled = false; };
    acts.click(ficha.chkUno);
    EXPECT_EQ(ficha.chkUno.Value(), 0);
    EXPECT_EQ(seen(), "cboLista.LostFocus chkUno.GotFocus chkUno.MouseDown chkUno.LostFocus optA.GotFocus");
    ficha.when["msgTabla.LeaveCell"] = [&](Integer*) { ficha.Unload(); };
    EXPECT_FALSE(acts.doubleClickCell(ficha.msgTabla, 2, 1));
    EXPECT_EQ(seen(), "optA.LostFocus msgTabla.GotFocus msgTabla.LeaveCell Unload cierra:Ficha");
    ficha.open();
    constexpr const char* keyDown = "txtNombre.KeyDown";
    for (const char* event : {"txtNombre.KeyPress", keyDown}) {
        ficha.when[event] = [&](Integer*) { ficha.Unload(); };
        ficha.txtNombre.Text = String(u"x");
        EXPECT_TRUE(acts.key(ficha.txtNombre, Key::Delete) &&
                    (!ficha.loaded() || acts.type(ficha.txtNombre, u"a")));
        EXPECT_FALSE(ficha.loaded());
        EXPECT_EQ(ficha.txtNombre.Text(), event == keyDown ? u"x" : u"");
        ficha.open();
    }
    ficha.when["msgTabla.LeaveCell"] = [&](Integer*) { ficha.msgTabla.Rows = 1; };
    ficha.msgTabla.Rows = 9;
    EXPECT_TRUE(acts.clickCell(ficha.msgTabla, 2, 1));
    EXPECT_EQ(seen(), "txtNombre.LostFocus msgTabla.GotFocus msgTabla.LeaveCell msgTabla.Click")
        << "the cell is gone";
}

TEST_F(ActsTest, keys_edit_at_the_caret)
{
    TextBox& box = ficha.txtNombre;
    const struct {
        const char16_t* typed;
        std::vector<Key> keys;
        const char* shown;
    } rows[] = {
        {u"abc", {}, "abc|"},
        {u"", {Key::Left, Key::Left, Key::Backspace}, "|bc"},
        {u"x", {Key::Delete}, "x|c"},
        {u"", {Key::Home, Key::Backspace, Key::End, Key::Delete, Key::Right}, "xc|"},
        {u"\U0001F600", {}, "xc😀|"},
        {u"\U0001F600", {}, "xc😀|"}, // one unit is free, a pair needs two
        {u"yz", {}, "xc😀y|"},
        {u"", {Key::Left, Key::Left, Key::Right, Key::Backspace}, "xc|y"},
        {u"", {Key::Up, Key::Down}, "xc|y"},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(acts.type(box, row.typed));
        for (const Key key : row.keys)
            acts.key(box, key);
        EXPECT_EQ(shown(box), row.shown);
    }
    acts.select(box, 1, 99);
    EXPECT_EQ(shown(box), "x[cy]");
    acts.key(box, Key::Left);
    EXPECT_EQ(shown(box), "x|cy");
    acts.select(box, 0, 2);
    acts.key(box, Key::Right);
    EXPECT_EQ(shown(box), "xc|y");
    acts.select(box, 0, 2);
    acts.type(box, u"Ñ");
    EXPECT_EQ(shown(box), "Ñ|y");
    acts.select(box, 0, 1);
    acts.key(box, Key::Delete);
    EXPECT_EQ(shown(box), "|y");
    seen();
    acts.paste(box, u"abc\U0001F600");
    EXPECT_EQ(shown(box), "abc|y") << "a cut parts no pair";
    EXPECT_EQ(seen(), "txtNombre.Change");
    acts.paste(box, u"z");
    acts.select(box, 4, 1);
    acts.type(box, u"\U0001F600");
    EXPECT_EQ(shown(box), "abcz[y]") << "refused whole, and what was selected stays";
    seen();
    acts.select(box, 0, 0);
    acts.paste(box, u"x");
    EXPECT_EQ(seen(), "");
}

TEST_F(ActsTest, a_key_goes_keydown_keypress_edit_change_and_may_be_changed_or_discarded)
{
    std::vector<Integer> codes;
    const auto keep = [&](Integer* code) { codes.push_back(*code); };
    ficha.when["txtNombre.KeyDown"] = ficha.when["txtNombre.KeyPress"] = keep;
    acts.type(ficha.txtNombre, u"a");
    EXPECT_EQ(seen(), "txtNombre.KeyDown txtNombre.KeyPress txtNombre.Change");
    acts.key(ficha.txtNombre, Key::Home);
    EXPECT_EQ(seen(), "txtNombre.KeyDown") << "no character, no KeyPress";
    acts.key(ficha.txtNombre, Key::Delete);
    EXPECT_EQ(seen(), "txtNombre.KeyDown txtNombre.Change");
    acts.type(ficha.txtNombre, u"7\U0001F600");
    acts.key(ficha.txtNombre, Key::Backspace);
    EXPECT_EQ(codes, (std::vector<Integer>{65, 97, 36, 46, 55, 55, -1, static_cast<Integer>(0xD83D), 8, 8}));
    ficha.when["txtNombre.KeyPress"] = [](Integer* ascii) {
        *ascii = *ascii == u'.' ? u',' : *ascii == u'q' ? 8 : 0;
    };
    acts.type(ficha.txtNombre, u"x.");
    EXPECT_EQ(shown(ficha.txtNombre), "7,|");
    acts.type(ficha.txtNombre, u"q");
    EXPECT_EQ(shown(ficha.txtNombre), "7|") << "changed to Backspace";
    acts.key(ficha.txtNombre, Key::Backspace);
    EXPECT_EQ(shown(ficha.txtNombre), "7|") << "Backspace has a character and was discarded";
    ficha.when["txtNombre.KeyDown"] = [](Integer* code) { *code = 0; };
    seen();
    acts.key(ficha.txtNombre, Key::Delete);
    acts.type(ficha.txtNombre, u".");
    EXPECT_EQ(seen(), "txtNombre.KeyDown txtNombre.KeyDown") << "discarded wholly";
}

TEST_F(ActsTest, enter_escape_and_tab_are_the_forms)
{
    acts.key(ficha.txtNombre, Key::Enter);
    acts.key(ficha.txtNombre, Key::Escape);
    EXPECT_EQ(seen(), "cmd(0).Click cmd(1).Click");
    EXPECT_EQ(ficha.ActiveControl(), &ficha.txtNombre);
    acts.key(ficha.txtNotas, Key::Enter);
    EXPECT_EQ(seen(), "txtNombre.LostFocus txtNotas.GotFocus cmd(0).Click");
    acts.key(ficha.cmd(1), Key::Enter);
    EXPECT_EQ(seen(), "txtNotas.LostFocus cmd(1).GotFocus cmd(1).Click")
        << "a focused button is the one pressed";
    ficha.cmd(1).Default = true;
    EXPECT_FALSE(ficha.cmd(0).Default()) << "one default button in a form";
    ficha.cmd(1).Enabled = false;
    acts.key(ficha.txtNotas, Key::Enter);
    ficha.cmd(1).Default = false;
    ficha.cmd(1).Cancel = false;
    acts.type(ficha.txtNotas, u"a");
    seen();
    acts.key(ficha.txtNotas, Key::Escape);
    EXPECT_EQ(seen(), "");
    acts.key(ficha.txtNotas, Key::Enter);
    EXPECT_EQ(ficha.txtNotas.Text(), u"a\r\n");
    acts.key(ficha.txtNombre, Key::Enter);
    EXPECT_EQ(ficha.txtNombre.Text(), u"");
    seen();
    ficha.chkUno.Enabled = ficha.fraCaja.Enabled = false;
    acts.key(ficha.txtNotas, Key::Tab);
    EXPECT_EQ(seen(), "txtNombre.LostFocus txtNotas.GotFocus txtNotas.LostFocus optC.GotFocus");
    acts.key(ficha.txtNombre, Key::BackTab);
    EXPECT_EQ(ficha.ActiveControl(), &ficha.cmd(0)) << "round the end, past what cannot have it";
}

TEST_F(ActsTest, keys_that_code_sends_follow_the_key_in_hand)
{
    ficha.txtNombre.Text = String(u"abcd");
    ficha.when["txtNombre.KeyPress"] = [](Integer*) { SendKeys(u"{end}"); };
    ficha.when["txtNombre.Change"] = [&](Integer*) { screen.note(shown(ficha.txtNombre)); };
    seen();
    acts.type(ficha.txtNombre, u"x");
    EXPECT_EQ(seen(), "txtNombre.KeyDown txtNombre.KeyPress txtNombre.Change x|abcd txtNombre.KeyDown");
    EXPECT_EQ(shown(ficha.txtNombre), "xabcd|");
    ficha.when.clear();
    ficha.when["cmd(0).Click"] = [&](Integer*) {
        ficha.txtNotas.SetFocus();
        SendKeys(u"a{HOME}b{RIGHT}{BS}{TAB} ");
    };
    acts.click(ficha.cmd(0));
    EXPECT_EQ(shown(ficha.txtNotas), "b|");
    EXPECT_EQ(ficha.chkUno.Value(), 1) << "they go to whatever has the focus then";
    EXPECT_EQ(numberOf([] { SendKeys(u"{NADA}"); }), failure::invalidCall);
}

TEST_F(ActsTest, keys_choose_in_lists_options_ticks_and_tabs)
{
    stand(ficha.cboLista);
    const auto chosen = [&](auto&& act) {
        act();
        return ficha.cboLista.ListIndex();
    };
    const std::pair<Key, Long> moves[] = {{Key::Down, 0}, {Key::Up, 0},   {Key::Right, 1}, {Key::End, 3},
                                          {Key::Down, 3}, {Key::Left, 2}, {Key::Home, 0},  {Key::Delete, 0}};
    for (const auto& [key, index] : moves)
        EXPECT_EQ(chosen([&, pressed = key] { acts.key(ficha.cboLista, pressed); }), index);
    EXPECT_EQ(chosen([&] { acts.type(ficha.cboLista, u"b"); }), 1);
    EXPECT_EQ(chosen([&] { acts.type(ficha.cboLista, u"B"); }), 2);
    EXPECT_EQ(chosen([&] { acts.type(ficha.cboLista, u"bz"); }), 1) << "round, and none starts with z";
    EXPECT_EQ(chosen([&] { acts.type(ficha.cboLista, u"á"); }), 0);
    seen();
    EXPECT_EQ(chosen([&] { acts.choose(ficha.cboLista, 1); }), 1);
    EXPECT_EQ(seen(), "cboLista.Click") << "a person's choice, though it was chosen already";
    EXPECT_EQ(numberOf([&] { acts.choose(ficha.cboLista, 4); }), failure::listIndexOutside);

    stand(ficha.optA);
    acts.key(ficha.optA, Key::Down);
    acts.key(ficha.optB, Key::Right);
    EXPECT_EQ(seen(), "optA.LostFocus optB.GotFocus optB.Click optB.LostFocus optA.GotFocus optA.Click")
        << "within the frame, in a circle";
    EXPECT_TRUE(ficha.optA.Value() && !ficha.optB.Value() && !ficha.optC.Value());
    stand(ficha.chkUno);
    acts.type(ficha.chkUno, u"  ");
    EXPECT_EQ(seen(), "chkUno.MouseDown chkUno.Click chkUno.MouseDown chkUno.Click");
    stand(ficha.mstTabs);
    for (const Key key : {Key::Left, Key::Right, Key::Down, Key::Home})
        acts.key(ficha.mstTabs, key);
    acts.clickTab(ficha.mstTabs, 1);
    EXPECT_EQ(seen(), "mstTabs.Click mstTabs.Click mstTabs.Click")
        << "a click on the tab that is in front counts";
    EXPECT_EQ(numberOf([&] { acts.clickTab(ficha.mstTabs, 3); }), failure::listIndexOutside);
}

TEST_F(ActsTest, a_grid_is_clicked_walked_and_scrolled)
{
    MSFlexGrid& grid = ficha.msgTabla;
    stand(grid);
    acts.clickCell(grid, 3, 1);
    EXPECT_EQ(seen(), "msgTabla.LeaveCell msgTabla.EnterCell msgTabla.Click");
    acts.clickCell(grid, 3, 1);
    EXPECT_EQ(seen(), "msgTabla.Click");
    acts.doubleClickCell(grid, 3, 0);
    EXPECT_EQ(seen(), "msgTabla.LeaveCell msgTabla.EnterCell msgTabla.Click msgTabla.DblClick");
    EXPECT_EQ(numberOf([&] { acts.clickCell(grid, 10, 0); }), failure::listIndexOutside);
    // Heading and four rows are seen.
    EXPECT_EQ(grid.visibleRows(), 4);
    const std::pair<Long, Long> tops[] = {{3, 3}, {9, 6}, {0, 1}};
    for (const auto& [row, top] : tops) {
        acts.scroll(grid, row);
        EXPECT_EQ(grid.TopRow(), top);
        EXPECT_EQ(seen(), "msgTabla.Scroll");
    }
    acts.scroll(grid, 1);
    EXPECT_EQ(seen(), "");
    acts.key(grid, Key::Down);
    EXPECT_EQ(seen(), "msgTabla.LeaveCell msgTabla.EnterCell");
    acts.type(grid, u" ");
    EXPECT_EQ(seen(), "msgTabla.Click") << "by the keyboard alone";
    acts.key(grid, Key::Down);
    EXPECT_EQ(seen(), "msgTabla.Scroll msgTabla.LeaveCell msgTabla.EnterCell") << "the cell stays in view";
    grid.Cols = 4;
    grid.setColWidth(1, 0);
    grid.setColWidth(3, 0);
    const std::pair<Key, Long> columns[] = {
        {Key::Right, 2}, {Key::Right, 2}, {Key::Left, 0}, {Key::End, 2}, {Key::Home, 0}};
    for (const auto& [key, column] : columns) {
        acts.key(grid, key);
        EXPECT_EQ(grid.Col(), column) << "past the hidden columns";
    }
    grid.Rows = 1;
    grid.Rows = 4;
    seen();
    acts.scroll(grid, 3);
    EXPECT_EQ(seen(), "") << "all rows fit";
}

} // namespace
} // namespace zv::test
