#pragma once

#include "zvhost/Host.h"
#include "zvhost/ListPage.h"

#include <QAction>
#include <QMainWindow>
#include <QSplitter>
#include <QTreeWidget>

namespace zv::host {

/// The host's window on a school: the tree of nodes at the left, the rows of the chosen one at the right.
class MainWindow final : public QMainWindow {
public:
    /// Without a school, to be made while one is being opened; it is for show() only after use().
    MainWindow();
    explicit MainWindow(std::unique_ptr<Host> host) : MainWindow() { use(std::move(host)); }

    Host& host() { return *host_; }
    /// Chooses a node in the tree.
    void go(const Node& node);
    /// A school to work on, in the place of the one that is open.
    void use(std::unique_ptr<Host> host);

    // What the menus do.
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
    /// Which commands the node, the row and the session have.
    void follow();
    void tellStatus();
    void showMenu(const QPoint& at);
    bool stillThere(Long key);
    bool inUse(Long key);
    bool mayDelete(Long key);
    void refuse(Long key);

    std::unique_ptr<Host> host_;
    const Node* node_ = nullptr;
    QSplitter parts_;
    QTreeWidget tree_;
    ListPage page_;
    QLabel database_, user_, mode_;
    QAction *new_ = nullptr, *ordering_ = nullptr, *change_ = nullptr, *delete_ = nullptr,
            *branches_ = nullptr, *refresh_ = nullptr, *csv_ = nullptr, *find_ = nullptr, *bin_ = nullptr,
            *inUse_ = nullptr, *session_ = nullptr, *open_ = nullptr, *help_ = nullptr, *quit_ = nullptr;
};

} // namespace zv::host
