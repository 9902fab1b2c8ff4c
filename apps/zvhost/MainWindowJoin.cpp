// Two rows that are one: one in the place of the other, and the way back.
#include "data/history/Words.h"
#include "qt/QtText.h"
#include "zvhost/ListDialog.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Removal.h"

namespace zv::host {
namespace {

care::Joiner joiner(Host& host) { return {host.school(), host.url(), host.ownOpening()}; }

QString lines(const std::vector<String>& all)
{
    QStringList result;
    for (const String& each : all)
        result += toQt(each);
    return result.join(u'\n');
}

/// What the row that goes says and the other does not, but for its name; of what is stored enciphered
/// nothing.
QStringList lostBeyondName(const care::JoinPlan& plan, StringView table)
{
    const QString name = toQt(plan.goes).trimmed();
    QStringList lost;
    for (const history::Field& each : plan.lost)
        if (const auto* said = each.value.as<String>();
            !history::isSecret(table, each.column) && (said == nullptr || toQt(*said).trimmed() != name))
            lost += QStringLiteral("• ") + toQt(history::shown(table, {each}));
    return lost;
}

QString question(const care::JoinPlan& plan, StringView table, const NamedRow& stays, const NamedRow& goes)
{
    QString text = QStringLiteral("«%1» desaparece, y en su lugar queda «%2».").arg(goes.name, stays.name);
    if (!plan.moves.empty())
        text += QStringLiteral("\n\nPasa a usar «%1»:\n").arg(stays.name) + reasons(plan.moves);
    if (plan.merged != 0)
        text += QStringLiteral("\n\nLo que quedaría repetido (%1) se queda una sola vez.").arg(plan.merged);
    if (const QStringList lost = lostBeyondName(plan, table); !lost.isEmpty())
        text += QStringLiteral("\n\nDecía, y se pierde de vista:\n") + lost.join(u'\n');
    if (!plan.warnings.empty())
        text += QStringLiteral("\n\n") + lines(plan.warnings);
    return text;
}

/// Whether both rows are there. Where the list cannot be read, so far they are.
bool both(Host& host, const Node& node, Long one, Long other)
{
    try {
        return host.has(node, one) && host.has(node, other);
    } catch (const RuntimeError&) {
        return true;
    }
}

/// Asks before two rows that look alike are joined, where something besides a name would be lost.
bool agreed(QWidget* parent, Host& host, const care::Pair& pair)
{
    bool agrees = false;
    return tried(parent, QStringLiteral("No se ha podido sustituir."),
                 [&] {
                     const care::JoinPlan plan = care::planOf(joiner(host), pair);
                     const StringView table = pair.node->table;
                     const NamedRow stays{pair.stays, toQt(plan.stays)};
                     const NamedRow goes{pair.goes, toQt(plan.goes)};
                     agrees = !plan.obstacles.empty() || // Told when it is tried.
                              (plan.warnings.empty() && lostBeyondName(plan, table).isEmpty()) ||
                              confirm(parent, QStringLiteral("Unir"), question(plan, table, stays, goes),
                                      QStringLiteral("&Unir"));
                 }) &&
           agrees;
}

} // namespace

void MainWindow::settleJoins()
{
    if (host_->choices().readOnly)
        return;
    try {
        care::settleJoins(joiner(*host_));
    } catch (const RuntimeError&) {
        // The next that can settles what a station that died had begun.
    }
}

void MainWindow::replaceRow(const NamedRow& row)
{
    std::vector<NamedRow> others;
    std::optional<NamedRow> chosen;
    ListDialog dialog(this, QStringLiteral("Sustituir «%1» por…").arg(row.name), node_->columns, [&] {
        others.clear();
        std::vector<Row> shown;
        for (Row& each : RowReader(*host_, *node_).next(RowReader::all)) {
            if (each.key == row.key)
                continue;
            const QString name = each.values.empty()
                                     ? QString()
                                     : toQt(host::shown(each.values.front(), node_->columns.front()));
            others.push_back({each.key, name});
            shown.push_back({static_cast<Long>(shown.size()), std::move(each.values)});
        }
        return shown;
    });
    dialog.setObjectName(QStringLiteral("sustituir"));
    dialog
        .command(QStringLiteral("&Sustituir"), QStringLiteral("No se ha podido sustituir."),
                 [&](const ListDialog::Rows& places) {
                     const NamedRow& stays = others[places.front()];
                     const care::JoinPlan plan =
                         care::planOf(joiner(*host_), {moduleNode(node_->number), stays.key, row.key});
                     if (!plan.obstacles.empty())
                         return say(&dialog, QStringLiteral("No se puede sustituir"), lines(plan.obstacles));
                     if (confirm(&dialog, QStringLiteral("Sustituir"),
                                 question(plan, node_->table, stays, row), QStringLiteral("&Sustituir"))) {
                         chosen = stays;
                         dialog.accept();
                     }
                 })
        .setDefault(true);
    dialog.run(QStringLiteral("No hay otra fila en la lista."), ListDialog::Begins::searching);
    if (chosen)
        joinRows({moduleNode(node_->number), chosen->key, row.key});
}

void MainWindow::joinRows(const care::Pair& pair)
{
    Long number = 0;
    QString stays;
    QString goes;
    if (!changes(QStringLiteral("No se ha podido sustituir."), [&] {
            const care::JoinPlan plan = care::planOf(joiner(*host_), pair);
            stays = toQt(plan.stays);
            goes = toQt(plan.goes);
            host_->act([&] { number = care::join(joiner(*host_), pair); });
        }))
        return;
    page_.select(pair.stays);
    undo_.did(QStringLiteral("Se ha sustituido «%1» por «%2»").arg(goes, stays),
              [this, number] { part(number); });
}

void MainWindow::part(Long join)
{
    Long left = 0;
    if (!changes(QStringLiteral("No se ha podido deshacer."),
                 [&] { host_->act([&] { left = care::undoJoin(joiner(*host_), join); }); }))
        return;
    undo_.tell(left == 0
                   ? QStringLiteral("Las dos filas están como estaban")
                   : QStringLiteral(
                         "Las dos filas están como estaban, menos lo que alguien ha cambiado después (%1)")
                         .arg(left));
}

void MainWindow::tellAlike(Long key)
{
    if (host_->choices().readOnly)
        return;
    const Node& node = *node_;
    std::vector<care::Alike> alikes;
    try {
        alikes = care::lookAlikes(*host_->school().centro, *moduleNode(node.number), deciphered, key);
    } catch (const RuntimeError&) {
        // An extra over the dialog, which has saved its row: where the list cannot be read, nothing is told.
        return;
    }
    for (const care::Alike& each : alikes) {
        const care::Pair& pair = each.pair;
        const Long other = pair.stays == key ? pair.goes : pair.stays;
        const auto sees = [this, &node, other] {
            go(node);
            page_.select(other);
            page_.enter();
        };
        const auto joins = [this, &node, pair] {
            notice_.next();
            if (node_ != &node)
                go(node);
            if (agreed(this, *host_, pair))
                joinRows(pair);
        };
        notice_.tell(
            {.text = QStringLiteral("Ya hay «%1».").arg(toQt(pair.stays == key ? each.goes : each.stays)),
             .choices = {{QStringLiteral("Ver"), Qt::Key_R, sees},
                         {QStringLiteral("Unir"), Qt::Key_U, joins}},
             .holds = [this, &node, key, other] { return both(*host_, node, key, other); }});
    }
}

} // namespace zv::host
