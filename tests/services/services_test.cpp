#include "Fakes.h"
#include "forms/Ficha.h"
#include "services/MessageTable.h"
#include "services/Messages.h"
#include "services/modCentroConfiguracion.h"

namespace zv {
namespace {

using namespace test;

TEST(Messages, hold_every_text_as_staff_know_it)
{
    EXPECT_GE(std::size(messageTable), 255U) << "a dialog may add its own, none goes";
    const std::pair<Long, StringView> texts[] = {{100, u"ZORVEL GESTIÓN ESCOLAR"},
                                                 {300, u"TEXT PARA BOTONES Y GRIDS"},
                                                 {332, u"<<"},
                                                 {7081, u"El código de sucursal debe tener 4 cifra"},
                                                 {12082, u"Este tipo de I.V.A. ya exite"},
                                                 {15000, u"FRMTIPOMIEMBROCENRO"},
                                                 {22000, u"FRMTURO"},
                                                 {24101, u"¡Debe seleccionar un Banco previamente.!"},
                                                 {27002, u"Propiedades del Idioma "},
                                                 {29003, u"Estado Civil:"}};
    for (const auto& [id, expected] : texts)
        EXPECT_EQ(LoadResString(id), expected);
    EXPECT_EQ(LoadResString(520).size(), 230U);
    for (const Long missing : {0, 99, 102, 25003, 29004, -1, 65636})
        EXPECT_EQ(numberOf([&] { LoadResString(missing); }), failure::resourceMissing) << missing;
}

TEST(Messages, report_a_failure_once)
{
    FakeDesktop desktop;
    ResumeNext next;
    next([] { fail(failure::overflow); });
    EXPECT_TRUE(reportedFailure(message::readFailed));
    EXPECT_FALSE(reportedFailure(message::readFailed));
    EXPECT_EQ(desktop.seen(), "bip ZORVEL GESTIÓN ESCOLAR:16:ERROR al consultar la base de datos");
}

TEST(CargarTextos, finds_the_number_where_each_kind_keeps_it)
{
    struct Case {
        StringView kind, tag, expected;
    };
    const Case cases[] = {
        {u"Label", u"29003", u"Estado Civil:"},  {u"Label", u"", u"diseño"},
        {u"Label", u"29003b", u"diseño"},        {u"Label", u"99", u"diseño"},
        {u"CommandButton", u"334", u"Aceptar"},  {u"CommandButton", u"340", u"Salir"},
        {u"CommandButton", u"334b", u"Aceptar"}, {u"OptionButton", u"", u"diseño"},
        {u"CheckBox", u"b334", u"diseño"},       {u"Frame", u"1110", u"frame Datos Generales"},
        {u"CheckBox", u"-334", u"diseño"},
    };
    std::vector<ObjectPtr> controls;
    for (const Case& one : cases)
        controls.push_back(fake(one.kind, {{u"Tag", one.tag}, {u"Caption", u"diseño"}}));
    // A text box has no caption to set; what stands behind it is reached all the same.
    controls.insert(controls.begin() + 4, fake(u"TextBox", {{u"Tag", u"334"}}));
    const ObjectPtr form = fakeForm(u"29002", controls);
    CargarTextos(*form);
    controls.erase(controls.begin() + 4);
    EXPECT_EQ(text(form, u"Caption"), u"Propiedades del Estado Civil");
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(text(controls[i], u"Caption"), cases[i].expected)
            << toUtf8(cases[i].kind) << " " << toUtf8(cases[i].tag);

    const ObjectPtr untagged = fakeForm(u"", {});
    CargarTextos(*untagged);
    EXPECT_EQ(text(untagged, u"Caption"), u"diseño");
}

TEST(CargarTextos, reaches_the_parts_of_strips_toolbars_lists_and_menus)
{
    const auto caption = [](StringView value) { return fake(u"Parte", {{u"Caption", value}}); };
    const ObjectPtr tabs[] = {caption(u"a"), caption(u"b"), caption(u"c")};
    const ObjectPtr buttons[] = {fake(u"Parte", {{u"ToolTipText", u"327"}}),
                                 fake(u"Parte", {{u"ToolTipText", u"Imprimir"}}),
                                 fake(u"Parte", {{u"ToolTipText", u"338"}})};
    const ObjectPtr headers[] = {fake(u"Parte", {{u"Tag", u""}, {u"Text", u"fijo"}}),
                                 fake(u"Parte", {{u"Tag", u"321"}, {u"Text", u"x"}})};
    const auto list = [](auto& items) {
        return std::make_shared<FakeCollection>(1,
                                                std::vector<ObjectPtr>(std::begin(items), std::end(items)));
    };
    const ObjectPtr menu = fake(u"Menu", {{u"Tag", u"338"}, {u"Caption", u"340"}});
    const ObjectPtr form =
        fakeForm(u"1001", {fake(u"TabStrip", {{u"Tag", u"1101"}, {u"Tabs", list(tabs)}}),
                           fake(u"Toolbar", {{u"Tag", u""}, {u"Buttons", list(buttons)}}),
                           fake(u"ListView", {{u"Tag", u""}, {u"ColumnHeaders", list(headers)}}),
                           fake(u"ListView", {}), menu});
    CargarTextos(*form);
    EXPECT_EQ(text(tabs[0], u"Caption") + u"," + text(tabs[1], u"Caption") + u"," + text(tabs[2], u"Caption"),
              u"Datos Generales,Sucursales,c");
    EXPECT_EQ(text(buttons[0], u"ToolTipText") + u"," + text(buttons[1], u"ToolTipText") + u"," +
                  text(buttons[2], u"ToolTipText"),
              u"Nuevo,Imprimir,Eliminar");
    EXPECT_EQ(text(headers[0], u"Text") + u"," + text(headers[1], u"Text"), u"fijo,Fecha");
    EXPECT_EQ(text(menu, u"Caption"), u"Salir");
}

ObjectPtr button(StringView tag, StringView caption = u"x", Long left = 0, Long top = 0)
{
    return fake(u"CommandButton", {{u"Tag", tag},
                                   {u"Caption", caption},
                                   {u"Enabled", true},
                                   {u"Visible", true},
                                   {u"Left", left},
                                   {u"Top", top}});
}

String state(const ObjectPtr& button)
{
    return text(button, u"Tag") + (CBool(get(button, u"Enabled")) ? u"" : u" off") +
           (CBool(get(button, u"Visible")) ? u"" : u" hidden");
}

TEST(BloquearControles, disables_what_changes_data_and_turns_the_buttons)
{
    const std::pair<ObjectPtr, StringView> buttons[] = {
        {button(u"334"), u"334 off"},    {button(u"327"), u"327 off"},      {button(u"333"), u"333 off"},
        {button(u"335"), u"340"},        {button(u"335", u""), u"335 off"}, {button(u"", u"..."), u" off"},
        {button(u"336"), u"336 hidden"}, {button(u"326"), u"326"},          {button(u""), u""},
        {button(u"3270"), u"3270"},      {button(u"338"), u"338 hidden"}};
    struct Other {
        StringView kind;
        Value value;
        bool enabled;
    };
    const Other others[] = {
        {u"TextBox", u"", false},      {u"ComboBox", u"", false},       {u"CheckBox", Integer{1}, false},
        {u"ZDatePicker", u"", false},  {u"ZMenu", u"", false},          {u"ZTimeBox", u"", false},
        {u"OptionButton", true, true}, {u"OptionButton", false, false}, {u"Label", u"", true},
        {u"Frame", u"", true},         {u"TabStrip", u"", true},        {u"MSFlexGrid", u"", true},
        {u"Toolbar", u"", true}};
    std::vector<ObjectPtr> controls{fake(u"ComboBox", {}), fake(u"CommandButton", {{u"Tag", u"335"}})};
    for (const auto& [control, expected] : buttons)
        controls.push_back(control);
    for (const Other& other : others)
        controls.push_back(fake(other.kind, {{u"Value", other.value}, {u"Enabled", true}}));
    const ObjectPtr form = fakeForm(u"", controls);

    BloquearControles(*form, true);
    EXPECT_EQ(state(buttons[0].first) + state(buttons[3].first) + state(buttons[10].first), u"334335338");

    BloquearControles(*form, false);
    for (const auto& [control, expected] : buttons)
        EXPECT_EQ(state(control), expected);
    for (std::size_t i = 0; i < std::size(others); ++i)
        EXPECT_EQ(CBool(get(controls[2 + std::size(buttons) + i], u"Enabled")), others[i].enabled)
            << toUtf8(others[i].kind);
    // A button that cannot say what it is counts as one that changes data: here there is nothing to disable,
    // and no rule goes on.
    EXPECT_EQ(text(controls[1], u"Tag"), u"335");
}

TEST(BloquearControles, puts_the_modify_button_in_the_place_of_the_delete_button)
{
    struct Case {
        Long left, top;
        bool deleteFirst;
        StringView place;
    };
    // One at the very top has no place to give, unless it comes last.
    for (const Case& one : {Case{30, 40, true, u"30,40"}, {30, 40, false, u"30,40"}, {30, 0, true, u"1,2"}}) {
        const ObjectPtr modify = button(u"337", u"Modificar", 1, 2);
        std::vector<ObjectPtr> both{modify, button(u"338", u"Eliminar", one.left, one.top)};
        if (one.deleteFirst)
            std::swap(both[0], both[1]);
        BloquearControles(*fakeForm(u"", both), false);
        EXPECT_EQ(text(modify, u"Tag"), u"339");
        EXPECT_EQ(text(modify, u"Left") + u"," + text(modify, u"Top"), one.place);
    }
}

} // namespace
} // namespace zv
