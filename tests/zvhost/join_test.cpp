#include "HostFixture.h"

namespace zv::host {

/// Somebody who finds two rows for one thing.
struct JoinTest : HostTest {
    std::string told; ///< What the message boxes said.

    JoinTest()
    {
        school.centro->Execute(u"INSERT INTO EstadoCivil (IDEstadoCivil,Descripcion) VALUES (900,'Zona')");
        school.centro->Execute(u"UPDATE Personal SET CodEstadoCivil=900 WHERE IDPersonal<4");
        window->go(*nodeOf(u"frmEstadoCivil"));
        window->refresh();
    }
    /// The row that is chosen gives its place to another: in each question the button that does it.
    void replaceBy(const char* other)
    {
        bool searched = false;
        const auto acts = [&](QWidget& front) {
            if (auto* box = qobject_cast<QMessageBox*>(&front)) {
                told += box->text().toStdString() + "\n";
                QAbstractButton* pressed = box->buttons().front();
                for (QAbstractButton* each : box->buttons())
                    if (each->text().startsWith(QStringLiteral("&Sustituir")))
                        pressed = each;
                pressed->click();
            } else if (front.objectName() == u"sustituir" && !std::exchange(searched, true)) {
                type(other);
                key(Qt::Key_Return);
                // Later: the question that it opens is answered by this person too.
                QTimer::singleShot(0, &front, [] { key(Qt::Key_Return); });
            }
        };
        enter(acts, Qt::Key_Delete);
    }
    std::string users(int row)
    {
        return one(u"SELECT COUNT(*) AS n FROM Personal WHERE CodEstadoCivil=" +
                   fromUtf8(std::to_string(row)));
    }
    /// The row that looks like others, made in its dialog.
    void add(const char* name)
    {
        list().setFocus();
        thenAnswer(name);
        key(Qt::Key_N, Qt::ControlModifier);
    }
};

TEST_F(JoinTest, a_row_in_use_gives_its_place_to_another_and_comes_back)
{
    const std::string before = users(2);
    search("zona");
    replaceBy("casado");
    EXPECT_THAT(told, HasSubstr("«Zona» no se puede eliminar. La usan:\n• Miembros del personal: 3 ("));
    EXPECT_THAT(told,
                HasSubstr("«Zona» desaparece, y en su lugar queda «Casado/a».\n\nPasa a usar «Casado/a»:\n• "
                          "Miembros del personal: 3 ("));
    EXPECT_THAT(done(), HasSubstr("Se ha sustituido «Zona» por «Casado/a»"));
    EXPECT_EQ(users(900), "0");
    EXPECT_EQ(one(u"SELECT Descripcion FROM EstadoCivil WHERE IDEstadoCivil=900"), "");
    EXPECT_EQ(users(2), std::to_string(std::stoi(before) + 3));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(done(), HasSubstr("como estaban"));
    EXPECT_EQ(users(900), "3");
    EXPECT_EQ(users(2), before);
    EXPECT_EQ(one(u"SELECT Descripcion FROM EstadoCivil WHERE IDEstadoCivil=900"), "Zona");
}

TEST_F(JoinTest, what_is_lost_does_not_name_the_row_itself)
{
    window->go(*nodeOf(u"frmNacionalidad")); // Of two columns, by both of which a row is called.
    search("argentina");
    replaceBy("marroqu");
    EXPECT_THAT(told, HasSubstr("«Argentina · ARG» desaparece"));
    EXPECT_THAT(told, HasSubstr("se pierde de vista:\n• Abreviatura: «ARG»"));
}

TEST_F(JoinTest, a_new_row_that_looks_like_another_is_told_and_joined_by_a_key)
{
    for (const auto& [name, says] : {std::pair("zonas", ""), {"ZONA ", "Ya hay «Zona»."}}) {
        add(name);
        EXPECT_EQ(notice(), says);
    }
    // Deleted, it looks like nothing any more.
    list().setFocus();
    confirmDeletion();
    EXPECT_EQ(notice(), "");
    add("ZONA ");
    EXPECT_EQ(one(u"SELECT COUNT(*) AS n FROM EstadoCivil WHERE IDEstadoCivil>900"), "2");
    key(Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(list().currentIndex().siblingAtColumn(0).data().toString().toStdString(), "Zona");
    key(Qt::Key_U, Qt::AltModifier);
    EXPECT_EQ(notice(), "");
    EXPECT_THAT(done(), HasSubstr("Se ha sustituido «ZONA » por «Zona»"));
    EXPECT_EQ(one(u"SELECT COUNT(*) AS n FROM EstadoCivil WHERE IDEstadoCivil>900"), "1");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(one(u"SELECT COUNT(*) AS n FROM EstadoCivil WHERE IDEstadoCivil>900"), "2");
}

} // namespace zv::host
