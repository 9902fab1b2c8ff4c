#include "HostFixture.h"

#include <thread>

namespace zv::host {

/// A connection that takes its time for each part of the list, or does not answer after the first.
struct Distant final : ConnectionDecorator {
    using ConnectionDecorator::ConnectionDecorator;
    RecordsetPtr Execute(StringView statement) override
    {
        if (statement.starts_with(u"SELECT IDEstadoCivil, Descripcion")) {
            std::this_thread::sleep_for(std::chrono::milliseconds(8));
            if (away)
                throw DataError(failure::connectionLost, "08001", u"ausente", statement);
        }
        return inner()->Execute(statement);
    }
    bool away = false;
};

/// A list of many rows on a distant server.
struct LongList : HostTest {
    std::shared_ptr<Distant> distant = std::make_shared<Distant>(school.centro);
    static constexpr int rows = 12000;

    LongList()
    {
        school.centro->executeNative(u"DELETE FROM EstadoCivil");
        school.centro->executeNative(
            u"INSERT INTO EstadoCivil WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
            decimalText(rows) + u") SELECT i, 'Zona ' || (i*7 % " + decimalText(rows) + u") || 'ª' FROM n");
        School other = school;
        other.centro = distant;
        begin(other);
    }
    void begin(const School& with)
    {
        window->use(std::make_unique<Host>(u"sqlite:colegio.db", with));
        list().setFocus();
    }
    std::string count() { return child<QLabel>("cuenta").text().toStdString(); }
    std::string cell(int row) { return list().model()->index(row, 0).data().toString().toStdString(); }
    std::string chosen() { return cell(list().currentIndex().row()); }
    bool mayExport() { return child<QAction>("exportar").isEnabled(); }
    void awaitEnd(const std::string& told)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return count() == told; }, 20000)) << count();
    }
};

TEST_F(LongList, comes_while_the_person_works_in_it)
{
    EXPECT_THAT(count(), testing::EndsWith(" filas, y se leen más…"));
    EXPECT_FALSE(mayExport());
    type("77 zona");
    EXPECT_THAT(count(), testing::EndsWith(", y se leen más…"));
    awaitEnd("318 de 12000 filas");
    EXPECT_TRUE(mayExport());
    EXPECT_EQ(cell(0), "Zona 77ª");
    EXPECT_EQ(cell(317), "Zona 11977ª");
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(), "Zona 77ª");

    // What is new is chosen, although the search hides it and the rows come again one part after the other.
    thenAnswer("Zona 0ª bis");
    key(Qt::Key_N, Qt::ControlModifier);
    awaitEnd("12001 filas");
    EXPECT_EQ(chosen(), "Zona 0ª bis");
    EXPECT_EQ(cell(0), "Zona 0ª");
    key(Qt::Key_End, Qt::ShiftModifier);
    list().sortByColumn(0, Qt::DescendingOrder);
    awaitEnd("12001 filas");
    EXPECT_EQ(cell(0), "Zona 11999ª");
    EXPECT_EQ(chosen(), "Zona 11999ª");
}

TEST_F(LongList, says_that_it_was_cut_and_another_list_comes_at_once)
{
    distant->away = true;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return count().ends_with("00 filas. No se ha podido leer todo: pulse F5");
    })) << count();
    EXPECT_FALSE(mayExport());
    distant->away = false;
    key(Qt::Key_F5);
    window->go(*nodeOf(u"frmPais"));
    EXPECT_THAT(count(), testing::Not(HasSubstr("…")));
    const int countries = list().model()->rowCount();
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM Pais"), std::to_string(countries));
    QTest::qWait(100);
    EXPECT_EQ(list().model()->rowCount(), countries);
    window->go(*nodeOf(u"frmEstadoCivil"));
    awaitEnd("12000 filas");
}

TEST_F(LongList, never_takes_another_row_for_the_chosen_one)
{
    // Clicked while it is the first of those that have come.
    list().sortByColumn(0, Qt::DescendingOrder);
    const std::string clicked = cell(0);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                      list().visualRect(list().model()->index(0, 0)).center());
    awaitEnd("12000 filas");
    EXPECT_EQ(chosen(), clicked);

    // All that a search finds, and then there are more.
    search("zona 7");
    awaitEnd("3981 de 12000 filas");
    key(Qt::Key_A, Qt::ControlModifier);
    child<QLineEdit>("buscar").clear();
    awaitEnd("12000 filas");
    thenAnswer("", {Qt::Key_Escape});
    key(Qt::Key_Delete);
    EXPECT_THAT(asked, HasSubstr("¿Eliminar 3980 filas?")); // One of them is in use.

    // Other rows, and as many of them.
    search("zona 1199");
    awaitEnd("12 de 12000 filas");
    key(Qt::Key_A, Qt::ControlModifier);
    child<QLineEdit>("buscar").setText(QStringLiteral("zona 1198"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return cell(0) == "Zona 11989ª"; }));
    EXPECT_FALSE(list().selectionModel()->hasSelection());
    child<QLineEdit>("buscar").clear();
    awaitEnd("12000 filas");

    // Chosen while it is read anew; another station has made a row.
    school.centro->Execute(u"INSERT INTO EstadoCivil VALUES (20000,'De otra')");
    key(Qt::Key_F5);
    window->choose(300);
    awaitEnd("12001 filas");
    EXPECT_EQ(chosen(), one(u"SELECT Descripcion FROM EstadoCivil WHERE IDEstadoCivil=300"));

    // Deleted: the next one comes to its place at once, not when all has been read.
    confirmDeletion();
    EXPECT_TRUE(QTest::qWaitFor([&] { return list().model()->rowCount() == 12000; }));
    thenAnswer("", {Qt::Key_Escape});
    key(Qt::Key_Delete);
    EXPECT_THAT(asked, HasSubstr("¿Eliminar «"));

    // Asked for before it has come.
    window->go(*nodeOf(u"frmPais"));
    window->go(*nodeOf(u"frmEstadoCivil"));
    window->choose(11500);
    awaitEnd("12000 filas");
    EXPECT_EQ(chosen(), one(u"SELECT Descripcion FROM EstadoCivil WHERE IDEstadoCivil=11500"));
}

TEST_F(LongList, comes_to_its_end_for_a_person_who_goes_on_working)
{
    const int before = list().model()->rowCount();
    thenAnswer("", {Qt::Key_Escape});
    key(Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list().model()->rowCount() > before; }));
    distant->away = true;
    thenAnswer();
    key(Qt::Key_F5);
    EXPECT_THAT(count(), testing::EndsWith("pulse F5"));
}

} // namespace zv::host
