#include "HostFixture.h"
#include "robot/Import.h"
#include "robot/ImportFields.h"
#include "zvhost/RowsModel.h"

namespace zv::host {
namespace {

String exported(Host& host, const Node& node)
{
    RowLetters rows(node.columns);
    for (RowReader reader(host, node); !reader.isDone();)
        rows.add(reader.next(3));
    RowsModel model;
    model.show(std::move(rows), {.column = 0});
    return csvText(csvOf(model).toStdString());
}

} // namespace

/// Every list that the window exports is read back into a school that has none of its rows, and exported
/// again.
TEST(HostImport, a_list_that_was_exported_is_imported_as_it_was)
{
    QtDesktop screen;
    registerEngine(sqliteEngine());
    registerCipher([key = CipherKey::random()](bool) { return key; });
    installModule();
    School one = temporarySchool(u"sqlite:");
    fillSample(one);
    one.centro->executeNative(u"UPDATE Pais SET Descripcion='''=\"a\";b' WHERE IDPais=1");
    int lists = 0;
    for (const Node& node : nodes()) {
        if (!node.hasList() || !takesLists(node.form))
            continue;
        School other = temporarySchool(u"sqlite:");
        fillSample(other);
        Host from(u"sqlite:uno.db", one);
        Host to(u"sqlite:otro.db", other);
        const String list = exported(from, node);
        other.centro->executeNative(u"DELETE FROM " + String(node.table));
        const std::vector<CsvLine> lines = csvLines(list);
        EXPECT_GT(lines.size(), 1U) << toUtf8(node.name);
        importList(other, *moduleNode(node.number), lines, {}, [&](const ImportedLine& line) {
            EXPECT_TRUE(line.added) << toUtf8(String(node.name) + u": " + line.message);
        });
        EXPECT_EQ(toUtf8(exported(to, node)), toUtf8(list));
        ++lists;
    }
    EXPECT_EQ(lists, 29);
}

} // namespace zv::host
