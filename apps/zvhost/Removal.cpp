#include "zvhost/Removal.h"

#include "qt/QtText.h"
#include "zvhost/People.h"
#include "zvhost/Widgets.h"

namespace zv::host {
namespace {

/// Names that a question lists; of more only the number is told.
constexpr std::size_t listed = 8;

/// Why a row may not be deleted, now; "" if it may.
QString obstacle(Host& host, const Node& node, const NamedRow& row)
{
    if (!host.has(node, row.key))
        return QStringLiteral("Ya no está: se ha eliminado desde otro puesto.");
    const std::map<Long, Registration> held = heldRows(*host.school().centro, node);
    if (const auto found = held.find(row.key); found != held.end()) {
        People people(host.school());
        return heldBy(people, found->second) +
               QStringLiteral(". Espere a que la cierre, o vea Herramientas, Filas en uso.");
    }
    if (host.guardAgrees(node, row.key))
        return {};
    const std::vector<Referrer> who = referrers(*host.school().centro, node.table, row.key);
    return who.empty() ? QStringLiteral("El módulo no lo permite para esta lista.")
                       : QStringLiteral("La usan:\n") + reasons(who);
}

/// Whether what keeps it is that others refer to it.
bool mayBeReplaced(Host& host, const Node& node, const NamedRow& row)
{
    return host.has(node, row.key) && !heldRows(*host.school().centro, node).contains(row.key) &&
           !referrers(*host.school().centro, node.table, row.key).empty();
}

QString quoted(const NamedRow& row) { return QStringLiteral("«%1»").arg(row.name); }

/// The names of rows, a line each.
QString names(const std::vector<NamedRow>& rows)
{
    QStringList lines;
    for (const NamedRow& each : rows)
        if (static_cast<std::size_t>(lines.size()) < listed)
            lines += QStringLiteral("• ") + each.name;
    if (rows.size() > listed)
        lines += QStringLiteral("• y %1 más").arg(rows.size() - listed);
    return lines.join(u'\n');
}

QString question(Host& host, const Node& node, const std::vector<NamedRow>& rows, const QString& refused)
{
    QString text =
        rows.size() == 1
            ? QStringLiteral("¿Eliminar %1? Se podrá restaurar desde la papelera.").arg(quoted(rows.front()))
            : QStringLiteral("¿Eliminar %1 filas? Se podrán restaurar desde la papelera.\n\n")
                      .arg(rows.size()) +
                  names(rows);
    // Second check: the guards do not look at every table.
    for (const NamedRow& each : rows)
        if (const auto who = referrers(*host.school().centro, node.table, each.key); !who.empty())
            text += (rows.size() == 1 ? QStringLiteral("\n\nLa nombran todavía:\n")
                                      : QStringLiteral("\n\nNombran todavía a %1:\n").arg(quoted(each))) +
                    reasons(who);
    return refused.isEmpty() ? text : text + QStringLiteral("\n\nLas demás se quedan:\n") + refused;
}

} // namespace

QString reasons(const std::vector<Referrer>& who)
{
    QStringList lines;
    for (const Referrer& each : who) {
        QStringList names;
        for (const String& example : each.examples)
            names += toQt(example);
        lines += QStringLiteral("• %1: %2 (%3%4)")
                     .arg(toQt(nameOfTable(each.table)))
                     .arg(each.count)
                     .arg(names.join(QStringLiteral(", ")),
                          each.count > std::ssize(each.examples) ? QStringLiteral("…") : QString());
    }
    return lines.join(u'\n');
}

std::optional<NamedRow> removeRows(QWidget* parent, Host& host, const Node& node,
                                   const std::vector<NamedRow>& rows, Asks asks,
                                   std::vector<NamedRow>& removed)
{
    std::vector<NamedRow> may;
    QStringList refused;
    const auto sift = [&](const std::vector<NamedRow>& all) {
        may.clear();
        refused.clear();
        for (const NamedRow& each : all)
            if (const QString why = obstacle(host, node, each); why.isEmpty())
                may.push_back(each);
            else
                refused += QStringLiteral("%1 no se puede eliminar. %2").arg(quoted(each), why);
    };
    const auto tellRefused = [&] {
        if (!refused.isEmpty())
            say(parent, QStringLiteral("No se puede eliminar"), refused.join(QStringLiteral("\n\n")));
    };
    sift(rows);
    if (may.empty() && rows.size() == 1 && asks == Asks::yes && mayBeReplaced(host, node, rows.front()))
        return confirm(parent, QStringLiteral("No se puede eliminar"), refused.front(),
                       QStringLiteral("&Sustituir por…"))
                   ? std::optional(rows.front())
                   : std::nullopt;
    if (may.empty() || asks == Asks::no)
        tellRefused();
    if (may.empty())
        return std::nullopt;
    if (asks == Asks::yes) {
        const bool replaces = rows.size() == 1 && mayBeReplaced(host, node, rows.front());
        const Answer answer =
            ask(parent, QStringLiteral("Eliminar"),
                question(host, node, may, refused.join(QStringLiteral("\n\n"))), QStringLiteral("&Eliminar"),
                replaces ? QStringLiteral("&Sustituir por…") : QString());
        if (answer == Answer::other)
            return rows.front();
        if (answer == Answer::no)
            return std::nullopt;
        // Re-check, against a race: the answer may have taken its time.
        sift(std::vector<NamedRow>(may));
        tellRefused();
    }
    for (const NamedRow& each : may) {
        host.act([&] { moveToDeleted(host.school(), node.table, each.key); });
        noteDeletion(*host.school().borrado, node.table, each.key, host.choices().user);
        removed.push_back(each);
    }
    return std::nullopt;
}

} // namespace zv::host
