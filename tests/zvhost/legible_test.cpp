#include "HostFixture.h"

#include "qt/Contrast.h"
#include "zvhost/Undo.h"

#include <QHeaderView>
#include <QStatusBar>
#include <QTextBrowser>
#include <QToolBar>
#include <QTreeWidget>

namespace zv::host {

using test::Drawn;

TEST_F(HostTest, everything_can_be_read_in_light_and_in_dark)
{
    auto& table = list();
    auto& search = child<QLineEdit>("buscar");
    auto& tree = *window->findChild<QTreeWidget*>();
    auto& bar = *window->findChild<QToolBar*>();
    auto& done = dynamic_cast<Undo&>(child<QWidget>("hecho"));
    const auto button = [&](const char* name) -> QWidget& {
        return *bar.widgetForAction(&child<QAction>(name));
    };
    const auto row = [&](int number) { return table.visualRect(table.model()->index(number, 0)); };
    tree.setCurrentItem(tree.topLevelItem(0)->child(0));
    done.tell(QStringLiteral("Hecho"), QStringLiteral("Deshacer"), [] {});
    child<QAction>("ayuda").trigger();
    auto& manual = *window->findChild<QTextBrowser*>();
    test::underEachPalette([&] {
        QApplication::processEvents();
        manual.moveCursor(QTextCursor::Start);
        ASSERT_TRUE(manual.find(QStringLiteral("lo explica más abajo"))) << "a link";
        QTextCursor behind = manual.textCursor();
        behind.clearSelection();
        manual.setTextCursor(behind);
        const QRect link = manual.cursorRect().adjusted(-20, 0, -4, 0);
        QWidget& heading = *table.horizontalHeader()->viewport();
        const QFontMetrics letters = done.fontMetrics();
        const QRect undo(letters.horizontalAdvance(QStringLiteral("Hecho · ")), 0,
                         letters.horizontalAdvance(QStringLiteral("Desh")), done.height());
        std::vector<Drawn> texts{
            {"selected row", *table.viewport(), row(0)},
            {"row", *table.viewport(), row(1)},
            {"other row", *table.viewport(), row(2)},
            {"title of a column", heading, heading.rect().adjusted(4, 4, -heading.width() / 2, -4)},
            {"group", *tree.viewport(), tree.visualItemRect(tree.topLevelItem(0))},
            {"node", *tree.viewport(), tree.visualItemRect(tree.topLevelItem(0)->child(1))},
            {"selected node", *tree.viewport(), tree.visualItemRect(tree.topLevelItem(0)->child(0))},
            {"what a field is for", search, search.rect().adjusted(4, 4, -search.width() / 2, -4)},
            {"command", button("nuevo"), button("nuevo").rect()},
            {"command that is off", button("deshacer"), button("deshacer").rect()},
            {"what was done", done, done.rect()},
            {"link of what was done", done, undo},
            {"link of the manual", *manual.viewport(), link},
        };
        for (QLabel* each : window->statusBar()->findChildren<QLabel*>())
            texts.push_back({"last line", *each, each->rect()});
        for (const Drawn& text : texts)
            test::expectLegible(text);
    });
}

TEST_F(HostTest, a_list_without_rows_says_why)
{
    search("no hay ninguna así");
    QWidget& rows = *list().viewport();
    test::underEachPalette([&] { test::expectLegible({"why there are no rows", rows, rows.rect()}); });
}

} // namespace zv::host
