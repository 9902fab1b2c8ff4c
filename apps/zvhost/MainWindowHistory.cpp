// What the school's history knows: told after a dialog has closed, given back, shown.
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

void MainWindow::tellClosed()
{
    HistoryConnection* history = history::historyOf(host_->school().centro);
    const auto closed = history != nullptr ? history->takeClosed() : std::nullopt;
    if (!closed)
        return;
    try {
        const std::vector<Loss> losses = history::lossesOf(*history, *closed);
        if (losses.empty())
            return;
        const auto gives = [this](const std::vector<Loss>& some) { giveBack(some); };
        notice_.tell({Told(*host_).sentence(losses, history::savedShare(*closed, losses)) + u'.',
                      [this, losses, gives] {
                          showLosses(this, *host_, losses,
                                     host_->choices().readOnly
                                         ? nullptr
                                         : std::function<void(const std::vector<Loss>&)>(gives));
                      },
                      [gives, losses] { gives(losses); }});
    } catch (const RuntimeError&) {
        // An extra over the dialog, which has done what it does: where the history cannot be read, nothing is
        // told.
    }
}

void MainWindow::giveBack(const std::vector<Loss>& losses)
{
    history::GivenBack result;
    const bool done = tried(this, QStringLiteral("No se ha podido devolver."), [&] {
        host_->act([&] { result = history::giveBack(*host_->school().centro, losses); });
    });
    if (!done)
        return;
    notice_.next();
    readAgain(ListPage::Added::may);
    QString text = result.back == 1 ? QStringLiteral("Se ha devuelto 1 dato")
                                    : QStringLiteral("Se han devuelto %1 datos").arg(result.back);
    if (result.newer > 0)
        text += QStringLiteral("; %1 se queda como está: hay algo más nuevo").arg(result.newer);
    undo_.tell(text);
    page_.enter();
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
