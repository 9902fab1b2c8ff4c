#include "care/joins/JoinPlan.h"

#include "data/Statement.h"
#include "runtime/Convert.h"

#include <algorithm>

namespace zv::care {
namespace {

using history::Fields;

/// Dialogs that register no row: who has one open is not known.
constexpr StringView unregistered[] = {u"Emisor", u"OpcionMateria"};

/// Answers to different questions: what refers to one also names its question.
constexpr struct {
    StringView table;
    StringView kind;
} kinds[] = {{u"ConsejoOrientador_Respuesta", u"CodConsejoOrientador"}, {u"TipoRespInfInd", u"CodTipo"}};

} // namespace

String heldBy(const Registration& registration)
{
    return (registration.user == 0 ? String(u"alguien") : u"el usuario " + decimalText(registration.user)) +
           u", en el puesto " + registration.station.substr(0, registration.station.find_first_of(u" /"));
}

void addKind(JoinPlan& plan, const Pair& pair, const Fields& stays, const Fields& goes)
{
    for (const auto& [table, kind] : kinds) {
        if (!sameName(table, pair.node->table))
            continue;
        const Value* one = history::valueOf(stays, kind);
        const Value* other = history::valueOf(goes, kind);
        if (one != nullptr && other != nullptr && !history::same(*one, *other))
            plan.obstacles.push_back(statement(
                u"«{}» y «{}» responden a preguntas distintas ({}): donde esté una, la otra no se vería.",
                {plan.goes, plan.stays, kind}));
    }
}

void addBanks(JoinPlan& plan, Connection& centro, const Pair& pair, const Fields& stays, const Fields& goes)
{
    const auto text = [](const Fields& row, StringView column) {
        const Value* value = history::valueOf(row, column);
        return value == nullptr ? String() : String() + *value;
    };
    const String one = text(stays, u"Numero");
    const String other = text(goes, u"Numero");
    if (!one.empty() && !other.empty() && one != other)
        plan.warnings.push_back(
            statement(u"«{}» tiene el número {} y «{}» el {}: parecen dos bancos distintos.",
                      {plan.stays, one, plan.goes, other}));
    if (std::ranges::none_of(plan.moves,
                             [](const Referrer& each) { return sameName(each.table, u"Sucursal"); }))
        return;
    String codes;
    for (const RecordsetPtr rows =
             centro.Execute(statement(u"SELECT Codigo FROM Sucursal WHERE CodBanco={} AND Codigo IN "
                                      u"(SELECT Codigo FROM Sucursal WHERE CodBanco={}) ORDER BY Codigo",
                                      {pair.goes, pair.stays}));
         !rows->Eof(); rows->MoveNext())
        codes += (codes.empty() ? u"" : u", ") + String() + rows->row().front();
    if (!codes.empty())
        plan.warnings.push_back(
            statement(u"Los dos bancos tienen sucursales con el mismo código ({}), y quedarían repetidas: "
                      u"déle antes otro código a una de ellas, o elimínela.",
                      {codes}));
}

void addOpen(JoinPlan& plan, Connection& centro, const Pair& pair, const std::vector<Move>& moves)
{
    if (std::ranges::any_of(unregistered, [&](StringView each) { return sameName(each, pair.node->table); }))
        plan.warnings.emplace_back(
            u"La ventana de esta lista no deja dicho qué fila tiene abierta: antes de unir, ciérrela en "
            u"todos los puestos.");
    for (const Registration& each : registrations(centro)) {
        if (each.gone)
            continue;
        if (sameName(each.form, pair.node->dialog) && (each.row == pair.stays || each.row == pair.goes))
            plan.obstacles.push_back(statement(u"La fila {} la tiene abierta {}.", {each.row, heldBy(each)}));
        for (const ModuleNode& node : moduleNodes())
            if (!node.table.empty() && sameName(node.dialog, each.form) &&
                std::ranges::any_of(moves, [&](const Move& move) {
                    return sameName(move.table, node.table) &&
                           std::ranges::binary_search(move.keys, each.row);
                }))
                plan.warnings.push_back(statement(
                    u"La fila {} de «{}», que se refiere a la que sobra, la tiene abierta {}: si la "
                    u"guarda después, vuelve a referirse a la que sobra. Espere a que la cierre.",
                    {each.row, node.title, heldBy(each)}));
    }
}

} // namespace zv::care
