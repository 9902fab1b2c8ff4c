#include "zvhost/MainWindow.h"

#include "qt/Help.h"
#include "qt/QtText.h"
#include "session/cConstCol.h"
#include "session/cNombreNodo.h"
#include "suite/Registrations.h"
#include "zvhost/Deletion.h"
#include "zvhost/Dialogs.h"
#include "zvhost/Start.h"
#include "zvhost/Widgets.h"

#include <QMenuBar>
#include <QSaveFile>
#include <QStatusBar>
#include <QToolBar>

namespace zv::host {

MainWindow::MainWindow()
    : page_({[this] { openChosen(); }, [this] { follow(); }, [this](const QPoint& at) { showMenu(at); }})
{
    setObjectName(QStringLiteral("zvhost"));
    buildActions();
    buildMenus();
    buildTree();
    parts_.addWidget(&tree_);
    parts_.addWidget(&page_);
    parts_.setStretchFactor(1, 1);
    parts_.setChildrenCollapsible(false);
    setCentralWidget(&parts_);
    for (QLabel* each : {&database_, &user_, &mode_})
        statusBar()->addWidget(each, each == &database_ ? 1 : 0);
    resize(fontMetrics().averageCharWidth() * 170, fontMetrics().height() * 44);
    int tree = 0;
    for (const Node& node : nodes())
        tree = std::max(tree, fontMetrics().horizontalAdvance(toQt(node.name)));
    tree += fontMetrics().height() * 6;
    parts_.setSizes({tree, width() - tree});
    tree_.setFocus();
}

QAction& MainWindow::action(const QString& name, const QString& text, const QKeySequence& keys,
                            const std::function<void()>& does)
{
    QAction* made = addAction(text);
    made->setObjectName(name);
    made->setShortcut(keys);
    made->setToolTip(QString(text).remove(u'&') + QStringLiteral(" (") +
                     keys.toString(QKeySequence::NativeText) + u')');
    connect(made, &QAction::triggered, this, does);
    return *made;
}

void MainWindow::buildActions()
{
    new_ = &action(QStringLiteral("nuevo"), QStringLiteral("&Nuevo"), QKeySequence(Qt::CTRL | Qt::Key_N),
                   [this] { newRow(current()->number == cNombreNodo::Emisor ? -1 : 0); });
    ordering_ = &action(QStringLiteral("ordenante"), QStringLiteral("Nuevo &ordenante"),
                        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N), [this] { newRow(-2); });
    change_ = &action(QStringLiteral("modificar"), QStringLiteral("&Modificar"),
                      QKeySequence(Qt::CTRL | Qt::Key_M), [this] { openChosen(); });
    branches_ = &action(QStringLiteral("sucursales"), QStringLiteral("&Sucursales"),
                        QKeySequence(Qt::CTRL | Qt::Key_B), [this] { changeRow(true); });
    delete_ = &action(QStringLiteral("eliminar"), QStringLiteral("&Eliminar"), QKeySequence(Qt::Key_Delete),
                      [this] { deleteRow(); });
    refresh_ = &action(QStringLiteral("actualizar"), QStringLiteral("&Actualizar"), QKeySequence(Qt::Key_F5),
                       [this] { refresh(); });
    find_ = &action(QStringLiteral("encontrar"), QStringLiteral("&Buscar"),
                    QKeySequence(Qt::CTRL | Qt::Key_F), [this] { page_.findRow(); });
    csv_ = &action(QStringLiteral("exportar"), QStringLiteral("E&xportar la lista…"),
                   QKeySequence(Qt::CTRL | Qt::Key_E), [this] { exportCsv(); });
    bin_ = &action(QStringLiteral("papelera"), QStringLiteral("&Papelera…"),
                   QKeySequence(Qt::CTRL | Qt::Key_R), [this] { recycleBin(); });
    rowsInUse_ = &action(QStringLiteral("enuso"), QStringLiteral("&Filas en uso…"),
                         QKeySequence(Qt::CTRL | Qt::Key_L), [this] { rowsInUse(); });
    session_ = &action(QStringLiteral("sesion"), QStringLiteral("&Sesión…"),
                       QKeySequence(Qt::CTRL | Qt::Key_U), [this] { chooseSession(); });
    open_ = &action(QStringLiteral("otro"), QStringLiteral("A&brir otro colegio…"),
                    QKeySequence(Qt::CTRL | Qt::Key_O), [this] { openOther(); });
    help_ = &action(QStringLiteral("ayuda"), QStringLiteral("A&yuda"), QKeySequence(Qt::Key_F1),
                    [this] { showHelp(*this, QStringLiteral("zvhost")); });
    quit_ = &action(QStringLiteral("salir"), QStringLiteral("&Salir"), QKeySequence(Qt::CTRL | Qt::Key_Q),
                    [this] { close(); });
}

void MainWindow::buildMenus()
{
    QMenu* school = menuBar()->addMenu(QStringLiteral("&Colegio"));
    school->addActions({open_, session_});
    school->addSeparator();
    school->addAction(quit_);
    QMenu* row = menuBar()->addMenu(QStringLiteral("&Fila"));
    row->addActions({new_, ordering_, change_, branches_, delete_});
    QMenu* list = menuBar()->addMenu(QStringLiteral("&Lista"));
    list->addActions({find_, refresh_, csv_});
    QMenu* tools = menuBar()->addMenu(QStringLiteral("&Herramientas"));
    tools->addActions({bin_, rowsInUse_});
    menuBar()->addMenu(QStringLiteral("A&yuda"))->addAction(help_);
    QToolBar* bar = addToolBar(QStringLiteral("Órdenes"));
    bar->setMovable(false);
    bar->addActions({new_, ordering_, change_, branches_, delete_});
    bar->addSeparator();
    bar->addActions({refresh_, csv_});
    bar->addSeparator();
    bar->addActions({bin_, rowsInUse_, session_});
}

void MainWindow::buildTree()
{
    tree_.setObjectName(QStringLiteral("arbol"));
    tree_.setAccessibleName(QStringLiteral("Tablas del centro"));
    tree_.setHeaderHidden(true);
    QTreeWidgetItem* group = nullptr;
    for (const Node& node : nodes()) {
        if (group == nullptr || group->text(0) != toQt(node.group)) {
            group = std::make_unique<QTreeWidgetItem>(&tree_, QStringList(toQt(node.group))).release();
            group->setFlags(Qt::ItemIsEnabled);
            QFont bold = tree_.font();
            bold.setBold(true);
            group->setFont(0, bold);
        }
        auto* item = std::make_unique<QTreeWidgetItem>(group, QStringList(toQt(node.name))).release();
        item->setData(0, Qt::UserRole, node.number);
        item->setSizeHint(0, {0, fontMetrics().height() * 4 / 3});
    }
    tree_.expandAll();
    connect(&tree_, &QTreeWidget::currentItemChanged, this, [this] { chosen(); });
    connect(&tree_, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) {
        if (item->parent() == nullptr)
            return;
        if (node_ != nullptr && !node_->hasList())
            openChosen();
        else
            page_.enter();
    });
}

void MainWindow::go(const Node& node)
{
    for (QTreeWidgetItemIterator item(&tree_); *item != nullptr; ++item)
        if ((*item)->parent() != nullptr && (*item)->data(0, Qt::UserRole).toInt() == node.number)
            tree_.setCurrentItem(*item);
}

void MainWindow::use(std::unique_ptr<Host> host)
{
    host_ = std::move(host);
    tellStatus();
    if (node_ == nullptr)
        go(nodes().front());
    else
        chosen();
}

void MainWindow::chosen()
{
    const QTreeWidgetItem* item = tree_.currentItem();
    if (item == nullptr || item->parent() == nullptr)
        return;
    node_ = nodeOf(static_cast<Byte>(item->data(0, Qt::UserRole).toInt()));
    std::vector<Row> rows;
    if (node_->hasList())
        tried(this, QStringLiteral("La lista no se ha podido leer."), [&] { rows = host_->rows(*node_); });
    page_.show(*node_, std::move(rows));
}

void MainWindow::refresh()
{
    if (node_ == nullptr || !node_->hasList())
        return;
    tried(this, QStringLiteral("La lista no se ha podido leer."),
          [&] { page_.refresh(*node_, host_->rows(*node_)); });
}

void MainWindow::openDialog(Byte action, Long row, bool branches)
{
    tried(this, QStringLiteral("La ventana no se ha podido abrir."),
          [&] { host_->open(*node_, action, row, branches); });
    refresh();
    activateWindow();
    page_.enter();
}

void MainWindow::openChosen()
{
    if (node_->hasList())
        changeRow();
    else
        openDialog(cConstCol::NUEVO, 0);
}

void MainWindow::newRow(Long kind) { openDialog(cConstCol::NUEVO, kind); }

void MainWindow::changeRow(bool branches)
{
    if (const std::optional<Long> row = page_.selected(); row && stillThere(*row))
        openDialog(cConstCol::Modificado, *row, branches);
}

bool MainWindow::stillThere(Long key)
{
    bool there = false;
    if (tried(this, QStringLiteral("La fila no se ha podido leer."),
              [&] { there = host_->has(*node_, key); }) &&
        !there) {
        say(this, QStringLiteral("Ya no está"),
            QStringLiteral("«%1» ya no está: se ha eliminado desde otra estación. La lista se lee de nuevo.")
                .arg(page_.selectedName()));
        refresh();
    }
    return there;
}

bool MainWindow::heldElsewhere(Long key)
{
    for (const Registration& each : registrations(*host_->school().centro)) {
        if (!sameName(each.form, node_->form) || each.row != key || each.gone)
            continue;
        say(this, QStringLiteral("No se puede eliminar"),
            QStringLiteral(
                "La tiene abierta el usuario %1 desde %2. Espere a que la cierre, o vea Herramientas, "
                "Filas en uso.")
                .arg(each.user)
                .arg(toQt(each.moment)));
        return true;
    }
    return false;
}

bool MainWindow::deletable(Long key)
{
    if (heldElsewhere(key))
        return false;
    const bool may = host_->guardAgrees(*node_, key);
    if (!may)
        refuse(key);
    return may;
}

void MainWindow::refuse(Long key)
{
    QString text = QStringLiteral("«%1» no se puede eliminar.").arg(page_.selectedName());
    const std::vector<Referrer> who = referrers(*host_->school().centro, node_->table, key);
    text += who.empty() ? QStringLiteral("\n\nEl módulo no lo permite para esta lista.")
                        : QStringLiteral("\n\nLa usan:\n") + reasons(who);
    say(this, QStringLiteral("No se puede eliminar"), text);
}

void MainWindow::deleteRow()
{
    const std::optional<Long> key = page_.selected();
    if (!key || host_->choices().readOnly || !stillThere(*key))
        return;
    tried(this, QStringLiteral("La fila no se ha podido eliminar."), [&] {
        if (!deletable(*key))
            return;
        QString question =
            QStringLiteral("¿Eliminar «%1»? Se podrá restaurar desde la papelera.").arg(page_.selectedName());
        // Second check: the guards do not look at every table.
        if (const auto who = referrers(*host_->school().centro, node_->table, *key); !who.empty())
            question += QStringLiteral("\n\nLa nombran todavía:\n") + reasons(who);
        // Re-check, against a race: the answer may have taken its time.
        if (confirm(this, QStringLiteral("Eliminar"), question, QStringLiteral("Eliminar")) &&
            deletable(*key))
            moveToDeleted(host_->school(), node_->table, *key);
    });
    refresh();
    page_.enter();
}

void MainWindow::exportCsv()
{
    const QString file =
        askFile(this, QStringLiteral("Exportar la lista"), toQt(node_->name),
                QStringLiteral("Hojas de cálculo (*.csv)"), QStringLiteral("csv"), IfThere::asks);
    if (file.isEmpty())
        return;
    QSaveFile target(file);
    const QByteArray bytes = page_.csv();
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.commit())
        say(this, QStringLiteral("No se ha podido"),
            QStringLiteral("No se puede escribir %1: %2").arg(file, target.errorString()));
}

void MainWindow::openOther()
{
    std::unique_ptr<Host> other = chooseSchool(this);
    if (other == nullptr)
        return;
    // Read-only mode carries over to the other school.
    Choices choices = other->choices();
    choices.readOnly = host_->choices().readOnly;
    other->choose(choices);
    use(std::move(other));
}

void MainWindow::recycleBin()
{
    showRecycleBin(this, host_->school(), host_->choices().readOnly);
    refresh();
}

void MainWindow::rowsInUse() { showRowsInUse(this, *host_->school().centro, host_->choices().readOnly); }

void MainWindow::chooseSession()
{
    if (const std::optional<Choices> choices = askChoices(this, *host_))
        host_->choose(*choices);
    tellStatus();
    follow();
}

void MainWindow::follow()
{
    const bool list = node_ != nullptr && node_->hasList();
    const bool writes = !host_->choices().readOnly;
    const bool row = list && page_.selected().has_value();
    const bool issuers = list && node_->number == cNombreNodo::Emisor;
    const bool banks = list && node_->number == cNombreNodo::OC_Bancos;
    new_->setText(issuers ? QStringLiteral("&Nuevo emisor") : QStringLiteral("&Nuevo"));
    new_->setEnabled(list && writes);
    ordering_->setVisible(issuers);
    ordering_->setEnabled(issuers && writes);
    change_->setText(!list    ? QStringLiteral("&Abrir")
                     : writes ? QStringLiteral("&Modificar")
                              : QStringLiteral("&Ver"));
    change_->setEnabled(row || (node_ != nullptr && !list));
    branches_->setVisible(banks);
    branches_->setEnabled(banks && row);
    delete_->setEnabled(row && writes);
    for (QAction* each : {refresh_, csv_, find_})
        each->setEnabled(list);
}

void MainWindow::tellStatus()
{
    const Choices& choices = host_->choices();
    setWindowTitle(QStringLiteral("Configuración del centro — %1").arg(shownUrl(host_->url())));
    database_.setText(shownUrl(host_->url()));
    user_.setText(QStringLiteral("Usuario: %1 (%2), perfil %3")
                      .arg(toQt(choices.userName))
                      .arg(choices.user)
                      .arg(choices.profile));
    mode_.setText((choices.readOnly ? QStringLiteral("Sólo consulta") : QStringLiteral("Edición")) +
                  (choices.mtp ? QStringLiteral(" · MTP") : QString()));
}

void MainWindow::showMenu(const QPoint& at)
{
    QMenu menu(this);
    menu.addActions({new_, ordering_, change_, branches_, delete_});
    menu.addSeparator();
    menu.addActions({refresh_, csv_});
    menu.exec(at);
}

} // namespace zv::host
