#include "suite/CentroApi.h"

#include "data/LateBound.h"
#include "data/Statement.h"
#include "runtime/CreateObject.h"
#include "runtime/Members.h"
#include "suite/Registrations.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace zv {

template <>
struct Kept<Connection&> : Kept<ConnectionPtr> {};

namespace {

/// Filters a form's Controls by class name.
std::vector<ObjectPtr> controlsOf(const ObjectPtr& controls, StringView kind)
{
    std::vector<ObjectPtr> result;
    const Long count = CLng(get(controls, u"Count"));
    for (Long i = 0; i < count; ++i) {
        ObjectPtr control = CObj(get(controls, u"Item", {Value(i)}));
        if (control->TypeName() == kind)
            result.push_back(std::move(control));
    }
    return result;
}

void doubleApostrophes(const ObjectPtr& box)
{
    const String text = CStr(get(box, u"Text"));
    if (text.find(u'\'') == String::npos || text == CStr(get(box, u"TextoDoblado")))
        return;
    const String safe = doubled(text);
    const Long maxLength = CLng(get(box, u"MaxLength"));
    const auto needed = static_cast<Long>(safe.size());
    if (maxLength > 0 && needed > maxLength)
        let(box, u"MaxLength", needed);
    let(box, u"Text", safe);
    let(box, u"TextoDoblado", safe);
}

/// nullopt for an empty table.
std::optional<Long> largestKey(Connection& connection, StringView table, StringView key)
{
    const RecordsetPtr rows = connection.Execute(statement(u"SELECT MAX({}) AS Mayor FROM {}", {key, table}));
    const Value largest = rows->Fields(u"Mayor");
    return largest.isNull() ? std::nullopt : std::optional(CLng(largest));
}

/// "cmdNuevoBanco(0)" for an element of a control array. Others have no Index, and reading it fails.
String fullName(const ObjectPtr& control)
{
    String name = CStr(get(control, u"Name"));
    try {
        return name + u"(" + decimalText(CLng(get(control, u"Index"))) + u")";
    } catch (const RuntimeError&) {
        return name;
    }
}

std::vector<String> deniedButtons(Connection& entrada, StringView form, Integer profile)
{
    std::vector<String> result;
    const RecordsetPtr rows = entrada.Execute(
        statement(u"SELECT Formulario, Boton FROM BotonAccesoRapido WHERE IDPerfil={}", {profile}));
    for (; !rows->Eof(); rows->MoveNext())
        if (sameName(CStr(rows->Fields(u"Formulario")), form))
            result.push_back(CStr(rows->Fields(u"Boton")));
    return result;
}

} // namespace

void CentroApi::Marcar_Obligatorios(const ObjectPtr& controls) const
{
    for (const ObjectPtr& label : controlsOf(controls, u"Label"))
        let(label, u"Obligatorio", CStr(get(label, u"Marca")) == u"*");
}

void CentroApi::ComprobarComilla(const ObjectPtr& controls) const
{
    for (const ObjectPtr& box : controlsOf(controls, u"TextBox"))
        doubleApostrophes(box);
}

Long CentroApi::IDMax(Connection& centro, Connection& borrado, StringView table, StringView key) const
{
    const auto live = largestKey(centro, table, key);
    const auto largest = std::max(live, largestKey(borrado, table, key));
    if (largest == std::numeric_limits<Long>::max())
        fail(failure::overflow);
    return largest.value_or(0) + 1;
}

bool CentroApi::registroactivo(Connection& centro, StringView form, Long row, Integer user) const
{
    return registerRow(centro, station_, form, row, user);
}

void CentroApi::EliminarRegistroActivo(Connection& centro, StringView form, Long row) const
{
    unregisterRow(centro, station_, form, row);
}

void CentroApi::Comprobar_BotonesAccesoRapido(const ObjectPtr& form, Connection& entrada,
                                              Integer profile) const
{
    const auto denied = deniedButtons(entrada, CStr(get(form, u"Name")), profile);
    for (const ObjectPtr& button : controlsOf(CObj(get(form, u"Controls")), u"CommandButton")) {
        const auto names = [&](const String& row) {
            return sameName(row, CStr(get(button, u"Name"))) || sameName(row, fullName(button));
        };
        if (CStr(get(button, u"Caption")) == u"..." && std::ranges::any_of(denied, names))
            let(button, u"Enabled", false);
    }
}

void CentroApi::agregarelementovacio(const ObjectPtr& comboBox) const
{
    call(comboBox, u"AddItem", {u""});
    Arguments entry{get(comboBox, u"NewIndex"), Long{0}};
    comboBox->invoke(u"ItemData", Access::let, entry);
}

void CentroApi::incluirpersonalenactividad(Connection& /*centro*/, Connection& /*borrado*/,
                                           const std::vector<Long>& staff, Integer /*kind*/) const
{
    if (staff.empty())
        fail(failure::invalidCall);
}

const Member* CentroApi::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        method<&CentroApi::Marcar_Obligatorios>(u"Marcar_Obligatorios"),
        method<&CentroApi::ComprobarComilla>(u"ComprobarComilla"),
        method<&CentroApi::IDMax>(u"IDMax"),
        method<&CentroApi::registroactivo>(u"registroactivo"),
        method<&CentroApi::EliminarRegistroActivo>(u"EliminarRegistroActivo"),
        method<&CentroApi::Comprobar_BotonesAccesoRapido>(u"Comprobar_BotonesAccesoRapido"),
        method<&CentroApi::agregarelementovacio>(u"agregarelementovacio"),
        method<&CentroApi::incluirpersonalenactividad>(u"incluirpersonalenactividad"),
    };
    return findMember(members, name);
}

void registerSuite()
{
    registerBuiltInClass(u"ZVApi.cCentroApi", [] { return std::make_shared<CentroApi>(); });
}

} // namespace zv
