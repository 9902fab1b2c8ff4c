#include "robot/Play.h"
#include "robot/ValueText.h"
#include "robot/Verbs.h"

#include "session/DialogDirectory.h"
#include "suite/CentroApi.h"

#include <algorithm>
#include <charconv>

namespace zv {

namespace {

void useDatabase(Play& play, Connection& connection, StringView statement)
{
    try {
        const RecordsetPtr rows = connection.executeNative(statement);
        for (; rows->State() != 0 && !rows->Eof(); rows->MoveNext()) {
            String line = u"fila";
            for (const Value& value : rows->row())
                line += u" " + valueText(value);
            play.observe(line);
        }
    } catch (const RuntimeError& error) {
        play.mistake(error.description());
    }
}

void sql(Play& play, const GuionArguments& a) { useDatabase(play, *play.state().school.centro, a[0].text); }
void borrado(Play& play, const GuionArguments& a)
{
    useDatabase(play, *play.state().school.borrado, a[0].text);
}
void entrada(Play& play, const GuionArguments& a)
{
    useDatabase(play, *play.state().school.entrada, a[0].text);
}

/// Parses True, False or a number; nullopt for anything else.
std::optional<Value> bareValue(StringView text)
{
    if (sameName(text, u"True") || sameName(text, u"False"))
        return Value(sameName(text, u"True"));
    if (const auto whole = parseNumber(text))
        return Value(*whole);
    const std::string digits = toUtf8(text);
    Double number = 0;
    const auto [end, failed] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
    const bool isNumber = failed == std::errc() && end == digits.data() + digits.size() &&
                          digits.find_first_not_of("-.0123456789") == std::string::npos;
    return isNumber ? std::optional(Value(number)) : std::nullopt;
}

void sesion(Play& play, const GuionArguments& members)
{
    for (const GuionArgument& member : members) {
        if (!play.state().session->has(member.name))
            play.mistake(u"el objeto de sesión no tiene el miembro " + member.name);
        const auto value = member.quoted ? std::optional(Value(member.text)) : bareValue(member.text);
        if (!value)
            play.mistake(u"el valor de " + member.name +
                         u" es True, False, un número o un texto entre comillas");
        let(*play.state().session, member.name, *value);
    }
}

void regionalMark(Play& play, const GuionArguments& a)
{
    if (!sameName(a[0].text, u"coma") && !sameName(a[0].text, u"punto"))
        play.mistake(u"region es coma o punto");
    useRegion(sameName(a[0].text, u"coma") ? spanishRegion : pointRegion);
}

/// Simulated other station; its registrations stay until the guion ends.
Station otherStation() { return {u"otro-puesto", thisStation().gone, thisStation().alive}; }

void ocupar(Play& play, const GuionArguments& a)
{
    const Long user = numberIn(a[2]);
    if (user != static_cast<Integer>(user))
        play.mistake(u"el usuario es un número de 16 bits");
    if (!dialogs().has(a[0].text))
        play.mistake(u"el módulo no tiene la ventana " + a[0].text);
    // Canonical name of the dialog, since registrations are found by it, and the guion may differ in case.
    const String form = dialogs().find(a[0].text).instance().Name();
    try {
        static_cast<void>(CentroApi(otherStation())
                              .registroactivo(*play.state().school.centro, form, numberIn(a[1]),
                                              static_cast<Integer>(user)));
    } catch (const RuntimeError& error) {
        play.mistake(error.description());
    }
}

void addFailure(Play& play, const GuionArguments& a, Tracing::Failures& failures)
{
    const Tracing::Failure failure{numberIn(a[0]), a[1].text, a.size() > 2 ? numberIn(a[2]) : 1};
    if (failure.number == 0)
        play.mistake(u"el número de un fallo no es 0");
    if (failure.times < 1)
        play.mistake(u"se falla una vez al menos");
    failures.push_back(failure);
}

void fallar(Play& play, const GuionArguments& a) { addFailure(play, a, play.state().tracing.failures); }

void estropear(Play& play, const GuionArguments& a)
{
    constexpr StringView operations[] = {Tracing::creation,
                                         u"Marcar_Obligatorios",
                                         u"ComprobarComilla",
                                         u"IDMax",
                                         u"registroactivo",
                                         u"EliminarRegistroActivo",
                                         u"Comprobar_BotonesAccesoRapido",
                                         u"agregarelementovacio",
                                         u"incluirpersonalenactividad"};
    if (std::ranges::none_of(operations, [&](StringView each) { return sameName(each, a[1].text); }))
        play.mistake(u"el objeto auxiliar no tiene la operación " + a[1].text);
    addFailure(play, a, play.state().tracing.apiFailures);
}

void traza(Play& play, const GuionArguments& a)
{
    struct Choice {
        StringView name;
        bool sql;
        bool api;
        bool steps;
    };
    for (const Choice& choice : {Choice{u"sql", true, false, false}, Choice{u"api", false, true, false},
                                 Choice{u"todo", true, true, false}, Choice{u"pasos", true, true, true},
                                 Choice{u"no", false, false, false}})
        if (sameName(choice.name, a[0].text)) {
            play.state().tracing.sql = choice.sql;
            play.state().tracing.api = choice.api;
            play.state().tracing.steps = choice.steps;
            return;
        }
    play.mistake(u"traza es sql, api, todo, pasos o no");
}

constexpr Verb verbs[] = {
    {u"sesion", u"a+", sesion},   {u"region", u"w", regionalMark},    {u"sql", u"t", sql},
    {u"borrado", u"t", borrado},  {u"entrada", u"t", entrada},        {u"ocupar", u"wnn", ocupar},
    {u"fallar", u"nt?n", fallar}, {u"estropear", u"nw?n", estropear}, {u"traza", u"w", traza},
};

} // namespace

std::span<const Verb> settingUpVerbs() { return verbs; }

} // namespace zv
