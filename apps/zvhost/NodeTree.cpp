#include "zvhost/NodeTree.h"

#include "qt/QtText.h"
#include "session/cNombreNodo.h"
#include "zvhost/RowsModel.h"

#include <QApplication>

#include <algorithm>

namespace zv::host {

NodeTree::NodeTree()
{
    setObjectName(QStringLiteral("arbol"));
    setAccessibleName(QStringLiteral("Tablas del centro"));
    setHeaderLabel(accessibleName()); // Not seen, but heard.
    setHeaderHidden(true);
    setUniformRowHeights(true); // Measured once: the first paint waits for it.
    const QSize height(0, fontMetrics().height() * 4 / 3);
    QTreeWidgetItem* group = nullptr;
    const auto add = [&](const Node& node) {
        if (group == nullptr || group->text(0) != toQt(node.group)) {
            group = std::make_unique<QTreeWidgetItem>(this, QStringList(toQt(node.group))).release();
            group->setFlags(Qt::ItemIsEnabled);
            QFont bold = font();
            bold.setBold(true);
            group->setFont(0, bold);
            group->setSizeHint(0, height);
        }
        auto* item = std::make_unique<QTreeWidgetItem>(group, QStringList(toQt(node.name))).release();
        item->setData(0, Qt::UserRole, node.number);
        item->setSizeHint(0, height);
    };
    for (const Node& node : nodes()) {
        add(node);
        if (node.number == cNombreNodo::InfIndiv)
            add(progressNode());
    }
    expandAll();
    // By a screen reader, which selects alone; of rows the toolkit would select the one of that number in its
    // group.
    setSelectionBehavior(SelectItems);
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
        if (const QList<QTreeWidgetItem*> now = selectedItems(); now.size() == 1)
            setCurrentItem(now.front());
    });
}

const Node* NodeTree::nodeAt(const QTreeWidgetItem* item)
{
    if (item == nullptr || item->parent() == nullptr)
        return nullptr;
    return nodeOf(static_cast<Byte>(item->data(0, Qt::UserRole).toInt()));
}

std::vector<QTreeWidgetItem*> NodeTree::lists() const
{
    std::vector<QTreeWidgetItem*> found;
    for (int group = 0; group < topLevelItemCount(); ++group)
        for (int list = 0; list < topLevelItem(group)->childCount(); ++list)
            found.push_back(topLevelItem(group)->child(list));
    return found;
}

void NodeTree::go(const Node& node)
{
    for (QTreeWidgetItem* each : lists())
        if (nodeAt(each) == &node)
            setCurrentItem(each);
}

void NodeTree::note(const Node& node, const QString& text)
{
    for (QTreeWidgetItem* each : lists())
        if (nodeAt(each) == &node)
            each->setText(0, toQt(node.name) + (text.isEmpty() ? text : QStringLiteral(" (%1)").arg(text)));
}

const Node* NodeTree::chosen() const { return nodeAt(currentItem()); }

int NodeTree::wholeWidth() const
{
    int widest = 0;
    for (const Node& node : nodes())
        widest = std::max(widest, fontMetrics().horizontalAdvance(toQt(node.name)));
    return widest + fontMetrics().height() * 6;
}

void NodeTree::keyboardSearch(const QString& typed)
{
    const bool goesOn = since_.isValid() && since_.elapsed() < QApplication::keyboardInputInterval();
    typed_ = goesOn ? typed_ + typed : typed;
    since_.start();
    // The same letter again goes to the next name that begins with it.
    const bool repeated = std::ranges::all_of(typed_, [&](QChar each) { return each == typed_.front(); });
    const QString sought = plainLetters(repeated ? typed_.left(1) : typed_);
    const std::vector<QTreeWidgetItem*> all = lists();
    const auto here = std::ranges::find(all, currentItem());
    const std::size_t from = here == all.end() ? 0 : static_cast<std::size_t>(here - all.begin());
    const std::size_t first = here != all.end() && repeated ? 1 : 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        QTreeWidgetItem* item = all[(from + first + i) % all.size()];
        if (!plainLetters(item->text(0)).startsWith(sought))
            continue;
        setCurrentItem(item);
        return;
    }
}

QModelIndex NodeTree::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex to = QTreeWidget::moveCursor(action, modifiers);
    // Left goes to the group, to close it.
    if (action == MoveLeft || action == MoveRight || !to.isValid() || to.parent().isValid())
        return to;
    const bool up = action == MoveUp || action == MovePrevious || action == MovePageUp;
    const QModelIndex on = up ? indexAbove(to) : indexBelow(to);
    if (on.isValid() && on.parent().isValid())
        return on;
    // Above the first group there is nothing; a closed group has to be gone to, to be opened.
    return up && !on.isValid() ? currentIndex() : to;
}

} // namespace zv::host
