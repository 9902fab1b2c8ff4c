// What is done to whole rows of the list: to delete, to take back, to copy, to export.
#include "qt/QtText.h"
#include "zvhost/Dialogs.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Removal.h"
#include "zvhost/Widgets.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

namespace zv::host {
namespace {

/// "Se ha eliminado «X»", or the number of rows, and whose they are.
QString toldOf(const char* one, const char* several, const std::vector<NamedRow>& rows, const QString& list)
{
    if (rows.size() == 1)
        return QString::fromUtf8(one) + QStringLiteral(" «%1»").arg(rows.front().name);
    return QString::fromUtf8(several) + QStringLiteral(" %1 filas de «%2»").arg(rows.size()).arg(list);
}

} // namespace

void MainWindow::deleteRows()
{
    const std::vector<NamedRow> rows = page_.selection();
    if (rows.empty() || host_->choices().readOnly)
        return;
    std::vector<NamedRow> removed;
    std::optional<NamedRow> replaced;
    tried(this, QStringLiteral("La fila no se ha podido eliminar."),
          [&] { replaced = removeRows(this, *host_, *node_, rows, Asks::yes, removed); });
    std::vector<Long> gone;
    std::ranges::transform(removed, std::back_inserter(gone), &NamedRow::key);
    if (!gone.empty())
        page_.takeAway(gone);
    refresh();
    if (replaced)
        replaceRow(*replaced);
    if (!removed.empty())
        tellRemoved(*node_, removed);
    page_.enter();
}

void MainWindow::tellRemoved(const Node& node, const std::vector<NamedRow>& rows)
{
    undo_.did(toldOf("Se ha eliminado", "Se han eliminado", rows, toQt(node.name)),
              [this, &node, rows] { putBack(node, rows); });
}

void MainWindow::putBack(const Node& node, const std::vector<NamedRow>& rows)
{
    std::vector<NamedRow> back;
    tried(this, QStringLiteral("La fila no se ha podido restaurar."), [&] {
        for (const NamedRow& each : rows) {
            host_->act([&] { restore(host_->school(), node.table, each.key); });
            back.push_back(each);
        }
    });
    if (node_ != &node)
        go(node);
    readAgain(ListPage::Added::shows);
    page_.enter();
    if (back.empty())
        return;
    page_.select(back.front().key);
    undo_.tell(toldOf("Se ha restaurado", "Se han restaurado", back, toQt(node.name)));
}

void MainWindow::recycleBin()
{
    const std::vector<DeletedRow> restored = showRecycleBin(this, *host_);
    readAgain(ListPage::Added::shows);
    if (!restored.empty())
        tellRestored(restored);
}

void MainWindow::tellRestored(const std::vector<DeletedRow>& rows)
{
    const Node* first = nodeOfTable(rows.front().table);
    const QString text = rows.size() > 1
                             ? QStringLiteral("Se han restaurado %1 filas").arg(rows.size())
                             : QStringLiteral("Se ha restaurado «%1» en «%2»")
                                   .arg(toQt(rows.front().name), toQt(nameOfTable(rows.front().table)));
    if (first == node_ && first != nullptr)
        page_.select(rows.front().key);
    undo_.did(text, [this, rows] {
        std::vector<NamedRow> removed;
        tried(this, QStringLiteral("La fila no se ha podido eliminar."), [&] {
            for (const DeletedRow& each : rows)
                if (const Node* node = nodeOfTable(each.table))
                    removeRows(this, *host_, *node, {{each.key, toQt(each.name)}}, Asks::no, removed);
        });
        refresh();
        page_.enter();
        if (!removed.empty())
            undo_.tell(removed.size() == 1
                           ? QStringLiteral("«%1» vuelve a la papelera").arg(removed.front().name)
                           : QStringLiteral("%1 filas vuelven a la papelera").arg(removed.size()));
    });
}

void MainWindow::copyRows()
{
    const std::vector<int> places = page_.selectedPlaces();
    QString text;
    withProgress(this, QStringLiteral("Copiando las filas…"),
                 [&, list = page_.shownList()] { text = list.text(places); });
    QGuiApplication::clipboard()->setText(text);
    const std::size_t rows = places.size();
    undo_.tell(rows == 1 ? QStringLiteral("Se ha copiado la fila")
                         : QStringLiteral("Se han copiado %1 filas").arg(rows));
}

void MainWindow::copyCell()
{
    QGuiApplication::clipboard()->setText(page_.cellAsText());
    undo_.tell(QStringLiteral("Se ha copiado «%1»").arg(page_.cellAsText()));
}

void MainWindow::exportCsv()
{
    const QString file =
        askFile(this, QStringLiteral("Exportar la lista"), toQt(node_->name),
                QStringLiteral("Hojas de cálculo (*.csv)"), QStringLiteral("csv"), IfThere::asks);
    if (file.isEmpty())
        return;
    const ShownList list = page_.shownList();
    QString failure;
    withProgress(this, QStringLiteral("Exportando la lista…"), [&] {
        QSaveFile target(file);
        if (!target.open(QIODevice::WriteOnly) || !list.writeCsv(target) || !target.commit())
            failure = target.errorString();
    });
    if (!failure.isEmpty()) {
        say(this, QStringLiteral("No se ha podido"),
            QStringLiteral("No se puede escribir %1: %2").arg(file, failure));
        return;
    }
    const std::size_t rows = list.order->size();
    undo_.tell((rows == 1 ? QStringLiteral("Se ha exportado 1 fila a %1")
                          : QStringLiteral("Se han exportado %2 filas a %1").arg(rows))
                   .arg(QFileInfo(file).fileName()),
               QStringLiteral("Abrir la carpeta"),
               [file] { QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath())); });
}

} // namespace zv::host
