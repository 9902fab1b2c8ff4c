// What the school's history knows: told after a dialog has closed, given back, shown.
#include "data/Statement.h"
#include "data/history/Cuts.h"
#include "data/history/Log.h"
#include "qt/QtText.h"
#include "suite/Registrations.h"
#include "zvhost/HistoryDialogs.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Told.h"
#include "zvhost/Widgets.h"

namespace zv::host {

using history::HistoryConnection;
using history::Loss;

bool MainWindow::remembers() const
{
    return host_ != nullptr && history::historyOf(host_->school().centro) != nullptr;
}

/// Nothing is given back where nothing may be written.
std::vector<Bar::Choice> MainWindow::seenOrGiven(const std::function<void()>& shows,
                                                 const std::function<void()>& gives) const
{
    std::vector<Bar::Choice> choices{{QStringLiteral("Ver"), Qt::Key_R, shows}};
    if (!host_->choices().readOnly)
        choices.push_back({QStringLiteral("Devolver"), Qt::Key_D, gives});
    return choices;
}

void MainWindow::tellClosed()
{
    HistoryConnection* history = history::historyOf(host_->school().centro);
    const auto closed = history != nullptr ? history->takeClosed() : std::nullopt;
    if (!closed)
        return;
    try {
        tellSaved(*closed);
        const std::vector<Loss> losses = history::lossesOf(*history, *closed);
        if (losses.empty())
            return;
        const auto gives = [this](const std::vector<Loss>& some) { giveBack(some); };
        std::vector<Long> openings;
        for (const HistoryConnection::Part& each : closed->parts)
            openings.push_back(each.number);
        std::erase(openings, 0);
        notice_.tell({Told(*host_).sentence(losses, history::savedShare(*closed, losses)) + u'.',
                      seenOrGiven(
                          [this, losses, gives] {
                              showLosses(this, *host_, losses,
                                         host_->choices().readOnly
                                             ? nullptr
                                             : std::function<void(const std::vector<Loss>&)>(gives));
                          },
                          [gives, losses] { gives(losses); }),
                      openings});
    } catch (const RuntimeError&) {
        // An extra over the dialog, which has done what it does: where the history cannot be read, nothing is
        // told.
    }
}

/// The dialog's openings that wrote something, to be taken back together.
void MainWindow::tellSaved(const HistoryConnection::Closed& closed)
{
    std::vector<Long> openings;
    QString name = toQt(node_->name);
    for (const HistoryConnection::Part& each : closed.parts) {
        const String entries =
            statement(u"Numero>={} AND Apertura={} AND Clase IN (2,3,4)", {each.number, each.number});
        if (each.number == 0)
            continue;
        history::forEach(*host_->school().centro, entries, [&](const history::Entry& entry) {
            openings.push_back(each.number);
            if (sameName(entry.table, node_->table))
                name = Told(*host_).row(entry.table, entry.row, history::fieldsIn(entry.after));
            return false;
        });
    }
    if (!openings.empty())
        undo_.did(QStringLiteral("Se ha guardado «%1»").arg(name), [this, openings] { takeBack(openings); });
}

bool MainWindow::changes(const QString& failed, const std::function<void()>& what)
{
    if (!tried(this, failed, what))
        return false;
    readAgain(ListPage::Added::may);
    page_.enter();
    return true;
}

void MainWindow::takeBack(const std::vector<Long>& openings)
{
    HistoryConnection* history = history::historyOf(host_->school().centro);
    std::size_t left = 0;
    const bool done = changes(QStringLiteral("No se ha podido deshacer."), [&] {
        for (auto each = openings.rbegin(); each != openings.rend(); ++each)
            left += history::undo(*history, {.opening = *each}, host_->ownOpening()).obstacles.size();
        history->takeClosed();
    });
    if (!done)
        return;
    // What it wrote over stands again.
    notice_.forget(openings);
    undo_.tell(left == 0 ? QStringLiteral("Se ha deshecho lo guardado")
                         : QStringLiteral(
                               "Se ha deshecho lo guardado, menos lo que alguien ha cambiado después (%1)")
                               .arg(left));
}

void MainWindow::giveBack(const std::vector<Loss>& losses)
{
    history::GivenBack result;
    Long act = 0;
    if (!changes(QStringLiteral("No se ha podido devolver."), [&] {
            act = host_->act([&] { result = history::giveBack(*host_->school().centro, losses); });
        }))
        return;
    notice_.next();
    QString text = result.back == 1 ? QStringLiteral("Se ha devuelto 1 dato")
                                    : QStringLiteral("Se han devuelto %1 datos").arg(result.back);
    if (result.newer > 0)
        text += QStringLiteral("; %1 se queda como está: hay algo más nuevo").arg(result.newer);
    tellAct(text, act);
}

void MainWindow::tellAct(const QString& text, Long act)
{
    if (act != 0)
        undo_.did(text, [this, act] { takeBack({act}); });
    else
        undo_.tell(text);
}

void MainWindow::tellCuts()
{
    HistoryConnection* history = history::historyOf(host_->school().centro);
    if (history == nullptr)
        return;
    try {
        for (const history::Cut& cut : history::cuts(*history, goneStations(*history))) {
            const QString text = toQt(history::told(cut, timeHere()));
            const auto gives = [this, cut, history] {
                std::size_t left = 0;
                if (!changes(QStringLiteral("No se ha podido devolver."), [&] {
                        left = history::takeBack(*history, cut, host_->ownOpening()).obstacles.size();
                        history->takeClosed();
                    }))
                    return;
                notice_.next();
                undo_.tell(left == 0 ? QStringLiteral("Todo está como antes de ese guardado")
                                     : QStringLiteral(
                                           "Está como antes, menos lo que alguien ha cambiado después (%1)")
                                           .arg(left));
            };
            notice_.tell({text, seenOrGiven(
                                    [this, cut] {
                                        showHistory(
                                            this, *host_,
                                            {QStringLiteral("Lo que llegó a guardarse"),
                                             statement(u"Numero>={} AND Guardado={}", {cut.save, cut.save})});
                                    },
                                    gives)});
        }
    } catch (const RuntimeError&) {
        // An extra over the list: where the history cannot be read, nothing is told.
    }
}

void MainWindow::showRowHistory()
{
    const std::vector<NamedRow> rows = page_.selection();
    if (rows.size() != 1)
        return;
    tried(this, QStringLiteral("El historial no se ha podido leer."), [&] {
        const NamedRow& row = rows.front();
        showHistory(this, *host_,
                    node_->hasList() ? historyOfRow(*host_, *node_, row.key, row.name)
                                     : historyOfSection(*host_, *node_, row.key, row.name));
    });
}

void MainWindow::showListHistory()
{
    tried(this, QStringLiteral("El historial no se ha podido leer."),
          [&] { showHistory(this, *host_, historyOfList(*node_)); });
}

} // namespace zv::host
