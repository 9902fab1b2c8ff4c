// The window's commands: its actions, menus and toolbar, and which of them there are at the moment.
#include "qt/Help.h"
#include "qt/Legible.h"
#include "qt/QtText.h"
#include "session/cNombreNodo.h"
#include "zvhost/Icons.h"
#include "zvhost/MainWindow.h"
#include "zvhost/ManualSearch.h"
#include "zvhost/Start.h"
#include "zvhost/Widgets.h"

#include <QCoreApplication>
#include <QMenuBar>
#include <QToolBar>

namespace zv::host {
namespace {

/// What is done with a row of a list or, where there is none, with the node.
QString changeText(bool isList, bool writes)
{
    if (!isList)
        return QStringLiteral("&Abrir");
    return writes ? QStringLiteral("&Modificar") : QStringLiteral("&Ver");
}

} // namespace

QAction& MainWindow::action(const QString& name, const QString& text, const QKeySequence& keys,
                            const std::function<void()>& does)
{
    QAction* made = addAction(text);
    made->setObjectName(name);
    made->setShortcut(keys);
    made->setIcon(commandIcon(name));
    made->setToolTip(QString(text).remove(u'&') + QStringLiteral(" (") +
                     keys.toString(QKeySequence::NativeText) + u')');
    connect(made, &QAction::triggered, this, does);
    return *made;
}

void MainWindow::buildRowActions()
{
    new_ = &action(QStringLiteral("nuevo"), QStringLiteral("&Nuevo"), QKeySequence(Qt::CTRL | Qt::Key_N),
                   [this] { newRow(node_->number == cNombreNodo::Emisor ? -1 : 0); });
    ordering_ = &action(QStringLiteral("ordenante"), QStringLiteral("Nuevo &ordenante"),
                        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N), [this] { newRow(-2); });
    change_ = &action(QStringLiteral("modificar"), QStringLiteral("&Modificar"),
                      QKeySequence(Qt::CTRL | Qt::Key_M), [this] { openChosen(); });
    branches_ = &action(QStringLiteral("sucursales"), QStringLiteral("&Sucursales"),
                        QKeySequence(Qt::CTRL | Qt::Key_B), [this] { changeRow(true); });
    delete_ = &action(QStringLiteral("eliminar"), QStringLiteral("&Eliminar"), QKeySequence(Qt::Key_Delete),
                      [this] { deleteRows(); });
    undoIt_ = &action(QStringLiteral("deshacer"), QStringLiteral("&Deshacer"),
                      QKeySequence(Qt::CTRL | Qt::Key_Z), [this] { undo(); });
    history_ = &action(QStringLiteral("historial"), QStringLiteral("&Historial…"),
                       QKeySequence(Qt::CTRL | Qt::Key_H), [this] { showRowHistory(); });
    copy_ = &action(QStringLiteral("copiar"), QStringLiteral("&Copiar"), QKeySequence(Qt::CTRL | Qt::Key_C),
                    [this] { copyRows(); });
    copyCell_ = &action(QStringLiteral("copiarCelda"), QStringLiteral("Copiar la ce&lda"),
                        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), [this] { copyCell(); });
}

void MainWindow::buildActions()
{
    buildRowActions();
    refresh_ = &action(QStringLiteral("actualizar"), QStringLiteral("&Actualizar"), QKeySequence(Qt::Key_F5),
                       [this] { refresh(); });
    find_ = &action(QStringLiteral("encontrar"), QStringLiteral("&Buscar"),
                    QKeySequence(Qt::CTRL | Qt::Key_F), [this] { page_.findRow(); });
    columns_ = &action(QStringLiteral("columnas"), QStringLiteral("A&justar las columnas"),
                       QKeySequence(Qt::CTRL | Qt::Key_J), [this] { page_.shareColumns(); });
    listHistory_ = &action(QStringLiteral("historialLista"), QStringLiteral("&Historial de la lista…"),
                           QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_H), [this] { showListHistory(); });
    csv_ = &action(QStringLiteral("exportar"), QStringLiteral("E&xportar la lista…"),
                   QKeySequence(Qt::CTRL | Qt::Key_E), [this] { exportCsv(); });
    print_ = &action(QStringLiteral("imprimir"), QStringLiteral("&Imprimir…"),
                     QKeySequence(Qt::CTRL | Qt::Key_P), [this] { print(); });
    bin_ = &action(QStringLiteral("papelera"), QStringLiteral("&Papelera…"),
                   QKeySequence(Qt::CTRL | Qt::Key_R), [this] { recycleBin(); });
    rowsInUse_ = &action(QStringLiteral("enuso"), QStringLiteral("&Filas en uso…"),
                         QKeySequence(Qt::CTRL | Qt::Key_L), [this] { rowsInUse(); });
    progress_ = &action(QStringLiteral("progreso"), QStringLiteral("&Qué falta en los informes"),
                        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F), [this] { go(progressNode()); });
    session_ = &action(QStringLiteral("sesion"), QStringLiteral("&Sesión…"),
                       QKeySequence(Qt::CTRL | Qt::Key_U), [this] { chooseSession(); });
    open_ = &action(QStringLiteral("otro"), QStringLiteral("A&brir otro colegio…"),
                    QKeySequence(Qt::CTRL | Qt::Key_O), [this] { openOther(); });
    backUp_ = &action(QStringLiteral("copia"), QStringLiteral("Copia de se&guridad…"),
                      QKeySequence(Qt::CTRL | Qt::Key_G), [this] { backUp(); });
    help_ = &action(QStringLiteral("ayuda"), QStringLiteral("A&yuda"), QKeySequence(Qt::Key_F1), [this] {
        const bool progress = node_ != nullptr && node_->isProgress();
        showHelp(*this, progress ? QStringLiteral("progreso") : QStringLiteral("zvhost"));
    });
    findHelp_ = &action(QStringLiteral("buscarAyuda"), QStringLiteral("&Buscar en la ayuda…"),
                        QKeySequence(Qt::CTRL | Qt::Key_F1), [this] { searchManual(this); });
    quit_ = &action(QStringLiteral("salir"), QStringLiteral("Sa&lir"), QKeySequence(Qt::CTRL | Qt::Key_Q),
                    [this] { close(); });
}

void MainWindow::buildMenus()
{
    QMenu* school = menuBar()->addMenu(QStringLiteral("&Colegio"));
    school->addAction(open_);
    QMenu* recent = school->addMenu(QStringLiteral("Colegios &recientes"));
    recent->setObjectName(QStringLiteral("recientes"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { listRecent(*recent); });
    school->addAction(session_);
    school->addSeparator();
    school->addAction(quit_);
    QMenu* row = menuBar()->addMenu(QStringLiteral("&Fila"));
    row->addActions({new_, ordering_, change_, branches_, delete_});
    row->addSeparator();
    row->addActions({undoIt_, history_, copy_, copyCell_});
    QMenu* list = menuBar()->addMenu(QStringLiteral("&Lista"));
    list->addActions({find_, refresh_, columns_, listHistory_, csv_, print_});
    QMenu* tools = menuBar()->addMenu(QStringLiteral("&Herramientas"));
    tools->addActions({bin_, rowsInUse_, progress_, backUp_});
    QMenu* help = menuBar()->addMenu(QStringLiteral("A&yuda"));
    help->addActions({help_, findHelp_});
    help->addSeparator();
    // What somebody at a telephone asks for.
    QAction* about = help->addAction(QStringLiteral("Acer&ca de zvhost"), this, [this] {
        say(this, QStringLiteral("Acerca de zvhost"),
            QStringLiteral("zvhost %1, con Qt %2.\n\nEl colegio es %3.")
                .arg(QCoreApplication::applicationVersion(), QString::fromLatin1(qVersion()),
                     database_.toolTip()));
    });
    about->setObjectName(QStringLiteral("acerca"));
    // Windows of their own, to which no palette comes down.
    for (QMenu* each : findChildren<QMenu*>())
        keepLegible(*each);
}

/// Every button keeps its place: those of single lists stand at the end, and none changes its width.
void MainWindow::buildToolBar()
{
    QToolBar* bar = addToolBar(QStringLiteral("Órdenes"));
    bar->setObjectName(QStringLiteral("ordenes"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    new_->setIconText(QStringLiteral("Nuevo"));
    csv_->setIconText(QStringLiteral("Exportar"));
    print_->setIconText(QStringLiteral("Imprimir"));
    bin_->setIconText(QStringLiteral("Papelera"));
    rowsInUse_->setIconText(QStringLiteral("Filas en uso"));
    session_->setIconText(QStringLiteral("Sesión"));
    bar->addActions({new_, change_, delete_, undoIt_});
    bar->addSeparator();
    bar->addActions({refresh_, csv_});
    bar->addSeparator();
    bar->addActions({bin_, rowsInUse_, session_});
    bar->addSeparator();
    bar->addActions({ordering_, branches_, print_});
    QWidget* change = bar->widgetForAction(change_);
    change->setMinimumWidth(change->sizeHint().width());
}

void MainWindow::listRecent(QMenu& menu)
{
    menu.clear();
    for (const QString& url : recentSchools()) {
        // Copied: an "&" of a path is no access key.
        QAction* open = menu.addAction(QString(url).replace(u'&', QStringLiteral("&&")));
        open->setEnabled(url != toQt(host_->url()));
        connect(open, &QAction::triggered, this, [this, url] { switchTo(openHostShown(this, fromQt(url))); });
    }
    if (menu.isEmpty())
        menu.addAction(QStringLiteral("Todavía no hay"))->setEnabled(false);
}

void MainWindow::follow()
{
    if (host_ == nullptr)
        return;
    const bool list = node_ != nullptr && node_->hasList();
    const bool writes = !host_->choices().readOnly;
    const bool row = list && page_.selected().has_value();
    const bool rows = listed() && page_.hasSelection();
    const bool issuers = list && node_->number == cNombreNodo::Emisor;
    const bool banks = list && node_->number == cNombreNodo::OC_Bancos;
    new_->setText(issuers ? QStringLiteral("&Nuevo emisor") : QStringLiteral("&Nuevo"));
    new_->setEnabled(list && writes);
    ordering_->setVisible(issuers);
    ordering_->setEnabled(issuers && writes);
    change_->setText(changeText(list, writes));
    const bool progress = node_ != nullptr && node_->isProgress();
    change_->setEnabled(row || (node_ != nullptr && !list && (!progress || page_.selected())));
    branches_->setVisible(banks);
    branches_->setEnabled(banks && row);
    print_->setVisible(node_ != nullptr && node_->hasSections());
    print_->setEnabled(print_->isVisible() && page_.selected().has_value());
    delete_->setEnabled(rows && list && writes);
    undoIt_->setEnabled(undo_.possible() && writes);
    for (QAction* each : {copy_, copyCell_})
        each->setEnabled(rows);
    history_->setVisible(remembers());
    history_->setEnabled(page_.selected().has_value() && listed() && !progress && remembers());
    listHistory_->setVisible(remembers());
    listHistory_->setEnabled(list && remembers());
    for (QAction* each : {refresh_, columns_, find_})
        each->setEnabled(listed());
    csv_->setEnabled(listed() && page_.isWhole());
}

void MainWindow::showMenu(const QPoint& at)
{
    QMenu menu(this);
    keepLegible(menu);
    menu.addActions({new_, ordering_, change_, branches_, delete_});
    menu.addSeparator();
    menu.addActions({copy_, copyCell_});
    menu.addSeparator();
    menu.addActions({refresh_, history_, listHistory_, csv_, print_});
    menu.exec(at);
}

} // namespace zv::host
