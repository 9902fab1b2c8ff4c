#include "zvhost/MainWindow.h"

#include "data/ServerAway.h"
#include "qt/EdgeStyle.h"
#include "qt/Legible.h"
#include "qt/QtText.h"
#include "qt/Zoom.h"
#include "session/cConstCol.h"
#include "zvhost/Dialogs.h"
#include "zvhost/People.h"
#include "zvhost/Start.h"
#include "zvhost/Widgets.h"

#include <QApplication>
#include <QScreen>
#include <QStatusBar>
#include <QVBoxLayout>

#include <algorithm>

namespace zv::host {
namespace {

using namespace std::chrono_literals;

/// How often rows that others have open are looked at again.
constexpr std::chrono::seconds betweenLooks = 10s;

} // namespace

MainWindow::MainWindow(Remembered::Where memory)
    : memory_(memory), page_({[this] { openChosen(); }, [this] { openDirect(); }, [this] { follow(); },
                              [this](const QPoint& at) { showMenu(at); }}),
      undo_([this] { follow(); })
{
    setObjectName(QStringLiteral("zvhost"));
    keepLegible(*this);
    buildActions();
    buildMenus();
    buildToolBar();
    connect(&tree_, &QTreeWidget::currentItemChanged, this, [this] { chosen(); });
    connect(&tree_, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) {
        if (item->parent() == nullptr)
            return;
        if (node_ != nullptr && node_->hasSections() && !page_.selected())
            openDirect();
        else
            page_.enter();
    });
    placeParts();
    watch_.setInterval(betweenLooks);
    connect(&watch_, &QTimer::timeout, this, [this] { followHeld(); });
    connect(&readOn_, &QTimer::timeout, this, [this] { readOn(); });
    tree_.setFocus();
}

void MainWindow::placeParts()
{
    parts_.addWidget(&tree_);
    parts_.addWidget(&page_);
    parts_.setStretchFactor(1, 1);
    parts_.setChildrenCollapsible(false);
    auto* rows = std::make_unique<QVBoxLayout>(&whole_).release();
    rows->setContentsMargins({});
    rows->addWidget(&notice_.bar());
    rows->addWidget(&parts_, 1);
    setCentralWidget(&whole_);
    drawEdges(*this);
    statusBar()->addWidget(&undo_, 1);
    for (QLabel* each : {&database_, &user_, &mode_})
        statusBar()->addPermanentWidget(each);
    const bool restored = memory_.restoreWindow(*this, parts_);
    const QSize most = withoutFrame(screen()->availableSize());
    if (restored) {
        if (!isMaximized() && !isFullScreen())
            resize(size().boundedTo(most));
        return;
    }
    resize(QSize(fontMetrics().averageCharWidth() * 170, fontMetrics().height() * 44).boundedTo(most));
    parts_.setSizes({tree_.wholeWidth(), width() - tree_.wholeWidth()});
}

void MainWindow::use(std::unique_ptr<Host> host)
{
    keepLook();
    reading_.reset();
    host_ = std::move(host);
    if (const std::optional<Choices> kept = choicesOf(memory_, *host_))
        host_->choose(*kept);
    wanted_.reset();
    undo_.forget();
    notice_.forget();
    toldRules_.clear();
    settleJoins();
    tellStatus();
    goBack();
    tellCuts();
    tellDrafts();
    remindOfCopies();
}

void MainWindow::keepLook()
{
    if (listed())
        host::keepLook(memory_, node_->number, page_.look());
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    keepLook();
    memory_.keepWindow(*this, parts_);
    QMainWindow::closeEvent(event);
}

void MainWindow::openDialog(const Node& node, Byte action, Long row, bool branches)
{
    tried(this, QStringLiteral("La ventana no se ha podido abrir."),
          [&] { host_->open(node, action, row, branches); });
    if (action == cConstCol::NUEVO && node_->hasList())
        readAgain(ListPage::Added::shows, [this](Long added) { tellAlike(added); });
    else
        readAgain(action == cConstCol::NUEVO ? ListPage::Added::shows : ListPage::Added::may);
    notice_.forget(Notice::Drafts::gone);
    tellClosed();
    activateWindow();
    page_.enter();
}

void MainWindow::openChosen()
{
    if (node_->hasList())
        changeRow();
    else if (node_->isProgress()) {
        if (const std::optional<Long> report = page_.selected())
            openReport(*report);
    } else if (const std::optional<Long> section = page_.selected())
        openSection(*section);
    else
        openDirect();
}

/// The windows of the reports know no session of consultation, and write what is accepted in them.
bool MainWindow::mayWrite(const QString& title)
{
    return !host_->choices().readOnly ||
           confirm(this, title,
                   QStringLiteral(
                       "La sesión es de sólo consulta, pero esta ventana no lo tiene en cuenta: lo que "
                       "se acepte en ella se guarda. Si sólo quiere mirar, ciérrela sin aceptar."),
                   QStringLiteral("&Abrir"));
}

void MainWindow::openDirect()
{
    if (mayWrite(toQt(node_->name)))
        openDialog(cConstCol::NUEVO, 0);
}

void MainWindow::openSection(Long id)
{
    const auto section = std::ranges::find(sections_, id, &Section::id);
    if (section == sections_.end() || !mayWrite(toQt(node_->name)))
        return;
    tellRules(*node_, id);
    // Runs in the window's own loop, which begins once it is shown.
    QTimer::singleShot(0, this, [chosen = *section] { chooseSection(chosen); });
    openDialog(cConstCol::NUEVO, 0);
}

void MainWindow::newRow(Long kind) { openDialog(cConstCol::NUEVO, kind); }

void MainWindow::changeRow(bool branches)
{
    const std::vector<NamedRow> rows = page_.selection();
    if (rows.size() == 1)
        changeRow(rows.front(), branches);
}

void MainWindow::changeRow(const NamedRow& row, bool branches)
{
    if (stillThere(row) && seesHeld(row))
        openDialog(cConstCol::Modificado, row.key, branches);
}

bool MainWindow::stillThere(const NamedRow& row)
{
    bool there = false;
    if (tried(this, QStringLiteral("La fila no se ha podido leer."),
              [&] { there = host_->has(*node_, row.key); }) &&
        !there) {
        say(this, QStringLiteral("Ya no está"),
            QStringLiteral("«%1» ya no está: se ha eliminado desde otro puesto. La lista se lee de nuevo.")
                .arg(row.name));
        refresh();
    }
    return there;
}

bool MainWindow::seesHeld(const NamedRow& row)
{
    if (host_->choices().readOnly)
        return true;
    QString who;
    const bool read = tried(this, QStringLiteral("La fila no se ha podido leer."), [&] {
        const std::map<Long, Registration> held = heldRows(*host_->school().centro, *node_);
        People people(host_->school());
        if (const auto found = held.find(row.key);
            found != held.end() && found->second.user != host_->choices().user)
            who = heldBy(people, found->second);
    });
    if (!read || who.isEmpty())
        return read;
    wanted_ = Wanted{node_, row};
    markHeld();
    return confirm(this, QStringLiteral("Fila en uso"),
                   who + QStringLiteral(". Puede verla, pero no cambiarla. Cuando quede libre se dirá en la "
                                        "última línea de la ventana."),
                   QStringLiteral("&Ver"));
}

/// An extra over the list: where the registrations cannot be read, there are no marks.
void MainWindow::markHeld()
{
    std::map<Long, QString> said;
    try {
        if (node_ != nullptr && node_->hasList()) {
            People people(host_->school());
            for (const auto& [key, registration] : heldRows(*host_->school().centro, *node_))
                said[key] = heldBy(people, registration) + u'.';
        }
    } catch (const RuntimeError&) {
        said.clear();
    }
    page_.mark(std::move(said));
    if (page_.marked().empty() && !wanted_)
        watch_.stop();
    else if (!watch_.isActive())
        watch_.start();
}

void MainWindow::followHeld()
{
    // Not below a dialog: its own statements come first.
    if (QApplication::activeModalWidget() != nullptr)
        return;
    const Unattended work;
    try {
        if (wanted_ && !heldRows(*host_->school().centro, *wanted_->node).contains(wanted_->row.key)) {
            const Wanted free = *wanted_;
            wanted_.reset();
            undo_.tell(QStringLiteral("«%1» ya está libre").arg(free.row.name), QStringLiteral("Abrir"),
                       [this, free] {
                           go(*free.node);
                           page_.select(free.row.key);
                           changeRow(free.row);
                       });
        }
    } catch (const RuntimeError&) {
        wanted_.reset();
    }
    markHeld();
}

void MainWindow::openOther() { switchTo(chooseSchool(this)); }

void MainWindow::switchTo(std::unique_ptr<Host> other)
{
    if (other == nullptr)
        return;
    // Read-only mode carries over to the other school.
    Choices choices = other->choices();
    choices.readOnly = host_->choices().readOnly;
    other->choose(choices);
    use(std::move(other));
}

void MainWindow::rowsInUse()
{
    showRowsInUse(this, *host_);
    markHeld();
}

void MainWindow::chooseSession()
{
    if (const std::optional<Choices> choices = askChoices(this, *host_)) {
        host_->choose(*choices);
        keepChoices(memory_, *host_);
        if (choices->readOnly)
            undo_.forget();
        tellDrafts();
    }
    tellStatus();
    // Another person has other sections.
    if (node_ != nullptr && !node_->hasList())
        chosen();
    follow();
}

void MainWindow::tellStatus()
{
    const Choices& choices = host_->choices();
    const QString url = shownUrl(host_->url());
    const QString known = People(host_->school()).known(choices.user);
    const QString person = known.isEmpty() ? toQt(choices.userName) : known;
    setWindowTitle(QStringLiteral("Configuración del centro — %1 — %2").arg(url, person));
    // Its file alone: the line needs its room for what was done. The title has the whole.
    database_.setText(fontMetrics().elidedText(url.section(u'/', -1), Qt::ElideMiddle,
                                               fontMetrics().averageCharWidth() * 30));
    database_.setToolTip(url);
    user_.setText(person);
    user_.setToolTip(QStringLiteral("Usuario %1 («%2»), perfil %3")
                         .arg(choices.user)
                         .arg(toQt(choices.userName))
                         .arg(choices.profile));
    mode_.setText((choices.readOnly ? QStringLiteral("Sólo consulta") : QStringLiteral("Edición")) +
                  (choices.mtp ? QStringLiteral(" · MTP") : QString()));
}

} // namespace zv::host
