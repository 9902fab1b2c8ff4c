#include "robot/Play.h"
#include "robot/Verbs.h"

#include "session/DialogDirectory.h"
#include "session/cAsignarDatos.h"

namespace zv {

namespace {

Byte nodeIn(const Play& play, const GuionArgument& argument)
{
    const Long node = numberIn(argument);
    if (node != static_cast<Byte>(node))
        play.mistake(u"un nodo es un número de 0 a 255");
    return static_cast<Byte>(node);
}

/// Copies action and row into the facade through the session object, as a host does before each operation.
void handOver(Play& play, cAsignarDatos& facade, const GuionArgument* action, const GuionArgument& row)
{
    const auto& session = play.state().session;
    if (action != nullptr)
        let(*session, u"Accion", numberIn(*action));
    let(*session, u"lngRowData", numberIn(row));
    facade.ObtenerDatos(session);
}

void abrir(Play& play, const GuionArguments& a)
{
    const Byte node = nodeIn(play, a[0]);
    const bool locked = a.size() > 3;
    if (locked && !sameName(a[3].text, u"bloqueado"))
        play.mistake(u"el cuarto argumento de abrir es bloqueado");
    play.callModule([&] {
        cAsignarDatos facade;
        handOver(play, facade, &a[1], a[2]);
        if (locked)
            facade.BloquearBanco();
        facade.ActivarFormulario(node);
    });
}

void mostrar(Play& play, const GuionArguments& a)
{
    if (!dialogs().has(a[0].text))
        play.mistake(u"el módulo no tiene la ventana " + a[0].text);
    play.callModule([&] {
        cAsignarDatos facade;
        handOver(play, facade, &a[1], a[2]);
        dialogs().find(a[0].text).instance().Show();
    });
}

void eliminar(Play& play, const GuionArguments& a)
{
    const Byte node = nodeIn(play, a[0]);
    play.callModule([&] {
        cAsignarDatos facade;
        handOver(play, facade, nullptr, a[1]);
        play.observe(facade.Eliminar(node) ? u"eliminar True" : u"eliminar False");
    });
}

constexpr Verb verbs[] = {
    {u"abrir", u"nnn?w", abrir},
    {u"mostrar", u"wnn", mostrar},
    {u"eliminar", u"nn", eliminar},
};

} // namespace

std::span<const Verb> callingVerbs() { return verbs; }

} // namespace zv
