#include "robot/Play.h"
#include "robot/Verbs.h"

#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

#include <utility>

namespace zv {

namespace {

constexpr StringView textBox = u"un cuadro de texto";

/// Does an act on a control, or records that it is inaccessible.
template <class C, class Act>
void actOn(Play& play, const GuionArgument& name, StringView kind, Act act)
{
    static_cast<void>(play.formToActOn());
    Control& control = play.control(name);
    auto* target = dynamic_cast<C*>(&control);
    if (target == nullptr)
        play.mistake(control.fullName() + u" no es " + String(kind));
    if (!control.accessible() || !act(play.person(), *target))
        play.observe(u"inaccesible " + control.fullName());
}

/// The same for an act with an argument that names an item of the control. Focus first, and only then look
/// the item up: the handlers that the focus runs may fill the control, or disable it.
template <class C, class Act>
void actInside(Play& play, const GuionArgument& name, StringView kind, Act act)
{
    actOn<C>(play, name, kind, [&](Person& person, C& target) {
        return person.focus(target) && target.accessible() && act(person, target);
    });
}

template <class Act>
void actOnGrid(Play& play, const GuionArguments& a, Act act)
{
    actInside<MSFlexGrid>(play, a[0], u"una rejilla", [&](Person& person, MSFlexGrid& grid) {
        const Long row = numberIn(a[1]);
        const Long column = a.size() > 2 ? numberIn(a[2]) : 0;
        if (row < 0 || row >= grid.Rows() || column < 0 || column >= grid.Cols())
            play.mistake(grid.fullName() + u" tiene " + decimalText(grid.Rows()) + u" filas y " +
                         decimalText(grid.Cols()) + u" columnas, contadas desde 0");
        return act(person, grid, row, column);
    });
}

void foco(Play& play, const GuionArguments& a)
{
    actOn<Control>(play, a[0], u"un control",
                   [](Person& person, Control& control) { return person.focus(control); });
}

void teclear(Play& play, const GuionArguments& a)
{
    actOn<Control>(play, a[0], u"un control", [&](Person& person, Control& control) {
        return a[1].text.empty() ? person.focus(control) : person.type(control, a[1].text);
    });
}

void escribir(Play& play, const GuionArguments& a)
{
    actInside<TextBox>(play, a[0], textBox, [&](Person& person, TextBox& box) {
        if (!person.select(box, 0, static_cast<Long>(box.Text().size())))
            return false;
        return a[1].text.empty() ? person.key(box, Key::Delete) : person.type(box, a[1].text);
    });
}

void tecla(Play& play, const GuionArguments& a)
{
    constexpr std::pair<StringView, Key> keys[] = {
        {u"ENTER", Key::Enter}, {u"ESC", Key::Escape},  {u"TAB", Key::Tab},   {u"BS", Key::Backspace},
        {u"DEL", Key::Delete},  {u"IZQ", Key::Left},    {u"DER", Key::Right}, {u"ARR", Key::Up},
        {u"ABA", Key::Down},    {u"INICIO", Key::Home}, {u"FIN", Key::End},
    };
    for (const auto& [name, key] : keys)
        if (sameName(name, a[1].text))
            return actOn<Control>(
                play, a[0], u"un control",
                [pressed = key](Person& person, Control& control) { return person.key(control, pressed); });
    play.mistake(u"las teclas son ENTER ESC TAB BS DEL IZQ DER ARR ABA INICIO FIN");
}

void pegar(Play& play, const GuionArguments& a)
{
    actOn<TextBox>(play, a[0], textBox,
                   [&](Person& person, TextBox& box) { return person.paste(box, a[1].text); });
}

void seleccionar(Play& play, const GuionArguments& a)
{
    actInside<TextBox>(play, a[0], textBox, [&](Person& person, TextBox& box) {
        const Long start = numberIn(a[1]);
        const Long length = numberIn(a[2]);
        if (start < 0 || length < 0)
            play.mistake(u"una selección no empieza ni mide menos de 0");
        return person.select(box, start, length);
    });
}

void pulsar(Play& play, const GuionArguments& a)
{
    actOn<Control>(play, a[0], u"un control", [&](Person& person, Control& control) {
        const bool clickable = dynamic_cast<CommandButton*>(&control) ||
                               dynamic_cast<OptionButton*>(&control) || dynamic_cast<CheckBox*>(&control);
        if (!clickable)
            play.mistake(control.fullName() + u" no es un botón, una opción ni una casilla");
        return person.click(control);
    });
}

Long entryOf(const Play& play, const ComboBox& box, const GuionArgument& entry)
{
    const Long count = box.ListCount();
    if (!entry.quoted) {
        const Long index = numberIn(entry);
        if (index < 0 || index >= count)
            play.mistake(box.fullName() + u" tiene " + decimalText(count) + u" elementos, contados desde 0");
        return index;
    }
    for (Long index = 0; index < count; ++index)
        if (box.List(index) == entry.text)
            return index;
    play.mistake(box.fullName() + u" no tiene el elemento " + zv::quoted(entry.text));
}

void elegir(Play& play, const GuionArguments& a)
{
    actInside<ComboBox>(play, a[0], u"una lista", [&](Person& person, ComboBox& box) {
        return person.choose(box, entryOf(play, box, a[1]));
    });
}

void celda(Play& play, const GuionArguments& a)
{
    actOnGrid(play, a, [](Person& person, MSFlexGrid& grid, Long row, Long column) {
        return person.clickCell(grid, row, column);
    });
}

void doble(Play& play, const GuionArguments& a)
{
    actOnGrid(play, a, [](Person& person, MSFlexGrid& grid, Long row, Long column) {
        return person.doubleClickCell(grid, row, column);
    });
}

void desplazar(Play& play, const GuionArguments& a)
{
    actOnGrid(play, a,
              [](Person& person, MSFlexGrid& grid, Long row, Long) { return person.scroll(grid, row); });
}

void pestana(Play& play, const GuionArguments& a)
{
    actInside<TabStrip>(play, a[0], u"una tira de pestañas", [&](Person& person, TabStrip& strip) {
        const Long tab = numberIn(a[1]);
        if (tab < 1 || tab > strip.tabCount())
            play.mistake(strip.fullName() + u" tiene " + decimalText(strip.tabCount()) +
                         u" pestañas, contadas desde 1");
        return person.clickTab(strip, tab);
    });
}

void fondo(Play& play, const GuionArguments&)
{
    if (!play.person().clickBackground(play.formToActOn()))
        play.observe(u"inaccesible forma");
}

void cerrar(Play& play, const GuionArguments&)
{
    if (!play.person().close(play.formToActOn()))
        play.observe(u"inaccesible forma");
}

constexpr Verb verbs[] = {
    {u"foco", u"c", foco},     {u"teclear", u"ct", teclear},     {u"escribir", u"ct", escribir},
    {u"tecla", u"cw", tecla},  {u"pegar", u"ct", pegar},         {u"seleccionar", u"cnn", seleccionar},
    {u"pulsar", u"c", pulsar}, {u"elegir", u"ce", elegir},       {u"celda", u"cnn", celda},
    {u"doble", u"cnn", doble}, {u"desplazar", u"cn", desplazar}, {u"pestana", u"cn", pestana},
    {u"fondo", u"", fondo},    {u"cerrar", u"", cerrar},
};

} // namespace

std::span<const Verb> actingVerbs() { return verbs; }

} // namespace zv
