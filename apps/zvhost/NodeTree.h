#pragma once

#include "zvhost/Nodes.h"

#include <QElapsedTimer>
#include <QTreeWidget>

namespace zv::host {

/// The tree of nodes in their groups. The keyboard goes from list to list: groups are only passed over, so
/// that the chosen entry is the list that is shown.
class NodeTree final : public QTreeWidget {
public:
    NodeTree();
    /// Chooses a node.
    void go(const Node& node);
    /// The chosen node; nullptr on a group.
    const Node* chosen() const;
    /// Sets what stands behind a node's name; "" for nothing.
    void note(const Node& node, const QString& text);
    static const Node* nodeAt(const QTreeWidgetItem* item);
    /// Width that its longest name needs.
    int wholeWidth() const;
    /// Type-ahead over the lists' names, without regard to case and accents.
    void keyboardSearch(const QString& typed) override;

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    std::vector<QTreeWidgetItem*> lists() const;

    QString typed_;
    QElapsedTimer since_;
};

} // namespace zv::host
