#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTextBrowser>
#include <QTreeView>

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace zv::test {

using Stops = std::set<QWidget*>;

/// Goes round a window by Tab, and back, as a person with a keyboard does: each stop is reached, nothing else
/// is, and the round ends where it began. `stand` is called at each stop.
inline void goRound(const QWidget& window, const Stops& stops, const std::function<void(QWidget&)>& stand)
{
    if (stops.empty())
        return;
    for (const bool back : {false, true}) {
        Stops reached;
        const QWidget* start = window.focusWidget();
        do {
            reached.insert(window.focusWidget());
            stand(*window.focusWidget());
            // A page of the manual goes through its links first.
            const QWidget* here = window.focusWidget();
            for (int links = 0; links < 200 && window.focusWidget() == here; ++links)
                QTest::keyClick(window.focusWidget(), back ? Qt::Key_Backtab : Qt::Key_Tab,
                                back ? Qt::ShiftModifier : Qt::NoModifier);
        } while (!reached.contains(window.focusWidget()));
        EXPECT_EQ(window.focusWidget(), start) << "a trap";
        EXPECT_EQ(reached, stops) << window.objectName().toStdString() << " "
                                  << window.focusWidget()->objectName().toStdString();
    }
}

inline void hearTable(QAccessibleTableInterface& table, const std::string& where)
{
    for (int column = 0; column < table.columnCount(); ++column)
        // The toolkit counts where nobody has written a title.
        EXPECT_TRUE(table.columnDescription(column).contains(QRegularExpression(QStringLiteral("[^\\d\\s]"))))
            << where << " " << column;
    for (int line = 0; line < table.rowCount(); ++line)
        EXPECT_FALSE(table.cellAt(line, 0)->text(QAccessible::Name).isEmpty()) << where << " " << line;
}

/// What a screen reader hears of a widget that takes the focus: its name, its state, and by its kind its role
/// and its value.
inline QAccessibleInterface& hear(QWidget& widget, const std::string& where)
{
    // Read anew: with nobody to tell, the toolkit keeps the cells of a table as they were read before.
    const auto query = [&] { return QAccessible::queryAccessibleInterface(&widget); };
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(query()));
    QAccessibleInterface& heard = *query();
    // Where the toolkit ties a field to its label, readers take its name from there.
    const auto labels = heard.relations(QAccessible::Label);
    const QAccessibleInterface& named = labels.isEmpty() ? heard : *labels.front().first;
    EXPECT_FALSE(named.text(QAccessible::Name).trimmed().isEmpty()) << where << " has no name";
    EXPECT_TRUE(heard.state().focusable) << where;
    EXPECT_FALSE(heard.state().disabled || heard.state().invisible) << where;
    for (const QAccessibleInterface* each = &heard; each->object() != widget.window();
         each = each->parent()) {
        const QAccessibleInterface* parent = each->parent();
        EXPECT_TRUE(parent != nullptr && parent->indexOfChild(each) >= 0)
            << where << " is no child of its parent";
        if (parent == nullptr)
            break;
    }
    const QString value = heard.text(QAccessible::Value);
    const auto is = [&](QAccessible::Role role) { EXPECT_EQ(heard.role(), role) << where; };
    if (const auto* line = qobject_cast<QLineEdit*>(&widget)) {
        is(QAccessible::EditableText);
        EXPECT_EQ(value, line->text()) << where;
    } else if (const auto* notes = qobject_cast<QPlainTextEdit*>(&widget)) {
        is(QAccessible::EditableText);
        EXPECT_EQ(value, notes->toPlainText()) << where;
        EXPECT_TRUE(heard.state().multiLine) << where;
    } else if (const auto* list = qobject_cast<QComboBox*>(&widget)) {
        is(QAccessible::ComboBox);
        EXPECT_EQ(value, list->currentText()) << where;
        EXPECT_FALSE(labels.isEmpty()) << where;
    } else if (const auto* button = qobject_cast<QAbstractButton*>(&widget)) {
        is(!button->isCheckable()    ? QAccessible::Button
           : button->autoExclusive() ? QAccessible::RadioButton
                                     : QAccessible::CheckBox);
        EXPECT_EQ(heard.state().checked, button->isChecked()) << where;
    } else if (qobject_cast<QTabBar*>(&widget) != nullptr) {
        is(QAccessible::PageTabList);
    } else if (qobject_cast<QTableView*>(&widget) != nullptr) {
        is(QAccessible::Table);
        hearTable(*heard.tableInterface(), where + " " + named.text(QAccessible::Name).toStdString());
    } else if (qobject_cast<QTreeView*>(&widget) != nullptr) {
        is(QAccessible::Tree);
        hearTable(*heard.tableInterface(), where);
    } else if (qobject_cast<QTextBrowser*>(&widget) != nullptr) {
        EXPECT_NE(heard.textInterface(), nullptr) << where;
    } else {
        // What takes the focus to be followed.
        is(QAccessible::Link);
        EXPECT_TRUE(
            heard.actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()))
            << where;
    }
    return heard;
}

} // namespace zv::test
