#include "robot/Portraits.h"

#include "data/Statement.h"
#include "forms/ComboBox.h"
#include "runtime/Convert.h"
#include "session/DialogDirectory.h"
#include "session/HostSession.h"
#include "session/NodeTable.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"
#include "session/cNombreNodo.h"

#include <algorithm>
#include <vector>

namespace zv {

namespace {

constexpr StringView primary = u"primaria";
constexpr StringView branchList = u"sucursales";

std::vector<Portrait> portraitsOf(const ModuleNode& node, Long first)
{
    std::vector<Portrait> all{{.state = u"nuevo", .action = cConstCol::NUEVO}};
    if (node.number == cNombreNodo::InfIndiv)
        all.push_back({.state = primary, .action = cConstCol::NUEVO});
    if (node.table.empty())
        return all;
    all.push_back({.state = u"cambio", .action = cConstCol::Modificado, .row = first});
    all.push_back({.state = u"mensaje", .action = cConstCol::NUEVO, .message = true});
    all.push_back({.state = u"consulta", .action = cConstCol::Modificado, .row = first, .readOnly = true});
    if (node.number == cNombreNodo::OC_Bancos)
        all.push_back({.state = branchList, .action = cConstCol::Modificado, .row = first});
    if (node.number == cNombreNodo::Emisor)
        all.push_back({.state = u"ordenante", .action = cConstCol::NUEVO, .row = -2});
    return all;
}

Long firstRow(const School& school, const ModuleNode& node)
{
    if (node.table.empty())
        return 0;
    const String key(node.key());
    const RecordsetPtr rows = school.centro->Execute(
        statement(u"SELECT {} FROM {} ORDER BY {}", {Value(key), Value(node.table), Value(key)}));
    return CLng(rows->row().front());
}

} // namespace

void openForPortraits(const School& school, const std::function<void(const Portrait&)>& next)
{
    const auto session = newHostSession(school);
    cAsignarDatos facade;
    for (const ModuleNode& node : moduleNodes())
        for (const Portrait& each : portraitsOf(node, firstRow(school, node))) {
            let(*session, u"Activa", !each.readOnly);
            let(*session, u"Accion", each.action);
            let(*session, u"lngRowData", each.row);
            facade.ObtenerDatos(session);
            if (each.state == branchList)
                facade.BloquearBanco();
            next(each);
            if (node.opens)
                facade.ActivarFormulario(node.number);
            else
                dialogs().find(node.dialog).instance().Show();
        }
}

void pressAccept(Form& form, const WindowAct& act)
{
    for (Control* each : form.Controls)
        if (auto* button = dynamic_cast<CommandButton*>(each); button != nullptr && button->Default())
            act([&](Acts& acts) { return acts.click(*button); });
}

void leadOn(Form& form, const Portrait& portrait, const WindowAct& act)
{
    const auto click = [&](StringView name, int index) {
        if (Control* button = form.Visible() ? form.find(name, index) : nullptr)
            act([&](Acts& acts) { return acts.click(*button); });
    };
    // Cascading lists: the first sections are those for which the sample's tutors have written something.
    for (const StringView list : {u"cboTipoEnsenanza", u"cboCursos", u"cboSecciones"})
        if (auto* box = dynamic_cast<ComboBox*>(form.find(list)))
            act([&](Acts& acts) {
                const bool secondary = portrait.state != primary && list == u"cboTipoEnsenanza";
                return acts.choose(*box, secondary ? std::min<Long>(1, box->ListCount() - 1) : 0);
            });
    click(u"cmdNotaManual1", 0);
    if (Control* branches = form.Visible() ? form.find(u"msgBanco") : nullptr) {
        // Acts, so that they do nothing where the grid is hidden.
        act([&](Acts& acts) { return acts.key(*branches, Key::Up) && acts.type(*branches, u" "); });
        click(u"cmdBotonera", portrait.state == branchList ? 3 : 2);
    }
}

} // namespace zv
