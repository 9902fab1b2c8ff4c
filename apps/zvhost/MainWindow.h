#pragma once

#include "zvhost/Host.h"
#include "zvhost/ListPage.h"

#include <QAction>
#include <QMainWindow>
#include <QSplitter>
#include <QTreeWidget>

namespace zv::host {

/// Main window on a school: the tree of nodes at the left, the rows of the chosen one at the right.
class MainWindow final : public QMainWindow {
public:
    /// Two-phase construction: without a school, to be built while one is being opened; call use() before
    /// show().
    MainWindow();
    explicit MainWindow(std::unique_ptr<Host> host) : MainWindow() { use(std::move(host)); }

    Host& host() { return *host_; }
    /// Chooses a node in the tree.
    void go(const Node& node);
    /// Sets the school to work on, in the place of the one that is open.
    void use(std::unique_ptr<Host> host);

    // Slots of the menus.
    void newRow(Long kind = 0);
    void changeRow(bool branches = false);
    void deleteRow();
    void refresh();
    void exportCsv();
    void openOther();
    void recycleBin();
    void rowsInUse();
    void chooseSession();

private:
    QAction& action(const QString& name, const QString& text, const QKeySequence& keys,
                    const std::function<void()>& does);
    void buildTree();
    void buildActions();
    void buildMenus();
    const Node* current() const { return node_; }
    void chosen();
    void openChosen();
    void openDialog(Byte action, Long row, bool branches = false);
    /// Enables the commands that the node, the row and the session have.
    void follow();
    void tellStatus();
    void showMenu(const QPoint& at);
    bool stillThere(Long key);
    bool heldElsewhere(Long key);
    bool deletable(Long key);
    void refuse(Long key);

    std::unique_ptr<Host> host_;
    const Node* node_ = nullptr;
    QSplitter parts_;
    QTreeWidget tree_;
    ListPage page_;
    QLabel database_, user_, mode_;
    QAction *new_ = nullptr, *ordering_ = nullptr, *change_ = nullptr, *delete_ = nullptr,
            *branches_ = nullptr, *refresh_ = nullptr, *csv_ = nullptr, *find_ = nullptr, *bin_ = nullptr,
            *rowsInUse_ = nullptr, *session_ = nullptr, *open_ = nullptr, *help_ = nullptr, *quit_ = nullptr;
};

} // namespace zv::host
