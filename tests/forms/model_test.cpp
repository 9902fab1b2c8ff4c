#include "Ficha.h"

#include "forms/Picture.h"

#include <filesystem>
#include <fstream>

namespace zv::test {
namespace {

using Model = FormTest;

Long number(const Value& value) { return CLng(value); }

TEST_F(Model, assigning_text_cuts_moves_the_caret_and_tells_a_change)
{
    TextBox& box = ficha.txtNombre;
    box.Text = String(u"abcdefgh");
    EXPECT_EQ(box.Text(), u"abcde");
    EXPECT_EQ(seen(), "txtNombre.Change");
    box.SelStart = 2;
    box.SelLength = 99;
    EXPECT_EQ(box.SelLength(), 3);
    box.TextoDoblado = String(u"abcde");
    box.Text = String(u"abcdeX");
    EXPECT_EQ(box.SelStart(), 0);
    EXPECT_EQ(box.SelLength(), 0);
    EXPECT_EQ(seen(), "") << "the same text after the cut";
    EXPECT_EQ(box.TextoDoblado(), u"abcde");
    box.Text = String(u"abcd\U0001F600");
    EXPECT_EQ(box.Text(), u"abcd") << "a cut parts no pair";
    EXPECT_EQ(box.TextoDoblado(), u"");
    box.MaxLength = 0;
    box.Text = String(300, u'x');
    EXPECT_EQ(box.Text().size(), 300U);
    EXPECT_EQ(numberOf([&] { box.SelStart = -1; }), failure::invalidProperty);
    EXPECT_EQ(numberOf([&] { box.Text = Value(Null()); }), failure::invalidNull);
    EXPECT_EQ(box.Text().size(), 300U) << "a failed assignment leaves what was there";
}

TEST_F(Model, options_ticks_and_lists_raise_click_on_a_change)
{
    ficha.when["optB.Click"] = [&](Integer*) { screen.note(ficha.optA.Value() ? "A" : "no A"); };
    ficha.optA.Value = true;
    ficha.optC.Value = true;
    ficha.optB.Value = true;
    ficha.optB.Value = true;
    ficha.optB.Value = false;
    EXPECT_EQ(seen(), "optA.Click optC.Click optB.Click no A");
    EXPECT_TRUE(ficha.optC.Value()) << "another container";
    for (const Integer value : std::initializer_list<Integer>{1, 1, 0})
        ficha.chkUno.Value = value;
    EXPECT_EQ(seen(), "chkUno.Click chkUno.Click");
    EXPECT_EQ(numberOf([&] { ficha.chkUno.Value = Integer{-1}; }), failure::invalidProperty);
    ficha.mstTabs.Tabs(1).select();
    EXPECT_EQ(seen(), "mstTabs.Click");

    ComboBox& list = ficha.cboLista;
    EXPECT_EQ(list.Text(), u"");
    for (const char16_t* entry : {u"a", u"b", u"c"})
        list.AddItem(entry);
    list.setItemData(list.NewIndex(), 7);
    list.ListIndex = 2;
    list.ListIndex = 2;
    list.ListIndex = -1;
    EXPECT_EQ(seen(), "cboLista.Click cboLista.Click");
    for (const auto& act : {std::function<void()>([&] { list.ListIndex = 3; }),
                            {[&] { list.ListIndex = -2; }},
                            {[&] { list.List(3); }},
                            {[&] { list.ItemData(-1); }},
                            {[&] { list.RemoveItem(3); }}})
        EXPECT_EQ(numberOf(act), failure::listIndexOutside);
    list.ListIndex = 2;
    list.RemoveItem(0);
    EXPECT_EQ(list.ListIndex(), 1);
    EXPECT_EQ(list.Text(), u"c");
    EXPECT_EQ(list.ItemData(1), 7);
    seen();
    list.RemoveItem(1);
    EXPECT_EQ(list.ListIndex(), -1);
    list.ListIndex.store(0);
    list.Clear();
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(list.ListCount(), 0);
    EXPECT_EQ(list.NewIndex(), -1);
    EXPECT_EQ(seen(), "") << "no event";
}

TEST_F(Model, a_grid_keeps_cells_widths_and_its_cell_inside)
{
    MSFlexGrid& grid = ficha.msgTabla;
    grid.Cols = 3;
    grid.AddItem(u"x\ty\tz\tw");
    grid.AddItem(u"solo");
    grid.setRowData(3, 70000);
    EXPECT_EQ(grid.TextMatrix(2, 2), u"z");
    EXPECT_EQ(grid.TextMatrix(3, 0), u"solo");
    EXPECT_EQ(grid.TextMatrix(3, 1), u"");
    grid.setColWidth(0, 2000);
    grid.setColWidth(1, 0);
    grid.RowHeightMin = 300;
    grid.Row = 3;
    grid.Col = 2;
    EXPECT_EQ(grid.RowSel(), 3);
    EXPECT_EQ(grid.ColSel(), 2);
    EXPECT_EQ(grid.CellLeft(), 2000);
    EXPECT_EQ(grid.CellTop(), 900);
    EXPECT_EQ(grid.CellHeight(), 300);
    grid.TopRow = 2;
    EXPECT_EQ(grid.CellTop(), 600);
    grid.RemoveItem(2);
    EXPECT_EQ(grid.RowData(2), 70000);
    EXPECT_EQ(grid.Row(), 2);
    grid.Cols = 2;
    EXPECT_EQ(grid.Col(), 1);
    grid.Clear();
    EXPECT_EQ(grid.TextMatrix(2, 0), u"");
    EXPECT_EQ(grid.RowData(2), 0);
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.ColWidth(0), 2000);
    for (const auto& act : {std::function<void()>([&] { grid.Row = 3; }),
                            {[&] { grid.Col = 2; }},
                            {[&] { grid.RowData(-1); }},
                            {[&] { grid.setTextMatrix(0, 2, u""); }},
                            {[&] { grid.RemoveItem(0); }}})
        EXPECT_EQ(numberOf(act), failure::listIndexOutside);
    EXPECT_EQ(numberOf([&] { grid.Rows = 0; }), failure::invalidProperty);
}

TEST_F(Model, everything_is_reached_by_name)
{
    const ObjectPtr controls = CObj(get(ficha, u"CONTROLS"));
    ASSERT_EQ(number(get(controls, u"Count")), 13);
    EXPECT_EQ(CStr(get(CObj(get(controls, u"Item", {Long{0}})), u"Name")), u"lblNombre");
    EXPECT_EQ(CObj(get(controls, u"Item", {Long{12}})).get(), &ficha.cmd(1)) << "in the order of declaration";
    EXPECT_EQ(numberOf([&] { get(controls, u"Item", {Long{13}}); }), failure::indexOutside);
    EXPECT_EQ(number(get(ficha.cmd(1), u"Index")), 1);
    EXPECT_EQ(numberOf([&] { get(ficha.optA, u"Index"); }), failure::noArrayElement);
    let(ficha.txtNombre, u"text", Long{12});
    EXPECT_EQ(CStr(get(ficha.txtNombre, u"Text")), u"12");
    EXPECT_EQ(numberOf([&] { get(ficha.lblNombre, u"Text"); }), failure::memberMissing);
    EXPECT_EQ(numberOf([&] { get(ficha.lblNombre, u"Caption", {Long{1}}); }), failure::argumentCount);
    EXPECT_EQ(numberOf([&] { let(ficha.chkUno, u"Value", u"x"); }), failure::typeMismatch);

    call(ficha.cboLista, u"AddItem", {u"uno"});
    Arguments data{Long{0}, Long{5}};
    ficha.cboLista.invoke(u"ItemData", Access::let, data);
    EXPECT_EQ(number(get(ficha.cboLista, u"ItemData", {Long{0}})), 5);
    EXPECT_EQ(CStr(get(ficha.cboLista, u"List", {Long{0}})), u"uno");
    EXPECT_EQ(numberOf([&] { let(ficha.cboLista, u"ListCount", Long{1}); }), failure::readOnlyProperty);
    EXPECT_EQ(numberOf([&] { get(ficha.cboLista, u"List"); }), failure::argumentCount);
    EXPECT_EQ(numberOf([&] { get(ficha.cboLista, u"List", {Long{0}, Long{0}}); }), failure::argumentCount);
    EXPECT_EQ(numberOf([&] { let(ficha.cboLista, u"ItemData", Long{0}); }), failure::argumentCount);
    EXPECT_EQ(numberOf([&] { let(ficha.cboLista, u"Clear", Long{0}); }), failure::memberMissing);
    Arguments cell{Long{1}, Long{0}, u"celda"};
    ficha.msgTabla.invoke(u"TextMatrix", Access::let, cell);
    EXPECT_EQ(CStr(get(ficha.msgTabla, u"textmatrix", {Long{1}, Long{0}})), u"celda");

    const ObjectPtr tabs = CObj(get(ficha.mstTabs, u"Tabs"));
    for (Long tab = 1; tab <= number(get(tabs, u"Count")); ++tab)
        let(CObj(get(tabs, u"Item", {tab})), u"Caption", u"Pestaña " + decimalText(tab));
    EXPECT_EQ(ficha.mstTabs.Tabs(2).Caption, u"Pestaña 2");
    let(CObj(get(ficha.mstTabs, u"Tabs", {Long{2}})), u"Selected", true);
    EXPECT_EQ(number(get(CObj(get(ficha.mstTabs, u"SelectedItem")), u"Index")), 2);
    EXPECT_FALSE(CBool(get(ficha.mstTabs, u"Selected", {Long{1}})));
    EXPECT_EQ(CStr(get(CObj(get(ficha.mstTabs, u"Tabs", {Long{2}})), u"ToolTipText")), u"Segunda");
    EXPECT_EQ(numberOf([&] { get(ficha.mstTabs, u"Tabs", {Long{0}}); }), failure::listIndexOutside);
    seen();
    call(ficha, u"Show");
    call(ficha.chkUno, u"SetFocus");
    call(ficha.optC, u"ZOrder");
    EXPECT_EQ(ficha.frontToBack().front(), &ficha.optC);
    EXPECT_EQ(seen(), "Load abre:Ficha Activate txtNombre.GotFocus txtNombre.LostFocus chkUno.GotFocus");
}

TEST(Pictures, are_known_by_their_first_bytes)
{
    const auto path = (std::filesystem::temp_directory_path() / "zv_imágen_ñ.ico").u16string();
    for (const std::string& bytes :
         {std::string("\0\0\1\0\1", 5), std::string("BM123"), std::string("GIF89a"), std::string("hola"),
          std::string(), std::string("\0\0\1", 3)}) {
        std::ofstream(std::filesystem::path(path), std::ios::binary) << bytes;
        EXPECT_EQ(numberOf([&] { LoadPicture(path); }), bytes.size() > 4 ? 0 : failure::noPicture) << bytes;
    }
    std::filesystem::remove(path);
    EXPECT_EQ(numberOf([&] { LoadPicture(path); }), failure::fileMissing);
}

} // namespace
} // namespace zv::test
