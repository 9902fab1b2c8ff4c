#include "HostFixture.h"

#include "suite/Registrations.h"
#include "zvhost/Deletion.h"
#include "zvhost/Start.h"
#include "zvhost/Widgets.h"

namespace zv::host {

TEST_F(HostTest, a_day_by_keyboard_alone)
{
    const auto legal = [this] {
        return one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion='Conviviente legal'");
    };
    key(Qt::Key_Return);
    EXPECT_EQ(place()->objectName(), "lista");

    thenAnswer("Conviviente");
    key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion='Conviviente'"), "1");

    // The new row is the selected one; its text is selected when the dialog opens.
    thenAnswer("Conviviente legal");
    key(Qt::Key_Return);
    EXPECT_EQ(legal(), "1");

    type("casado");
    EXPECT_EQ(place()->objectName(), "buscar");
    key(Qt::Key_Return);
    thenAnswer();
    key(Qt::Key_Delete);
    EXPECT_THAT(asked, HasSubstr("no se puede eliminar"));
    EXPECT_THAT(asked,
                HasSubstr("Miembros del personal: " +
                          one(u"SELECT COUNT(*) FROM Personal WHERE CodEstadoCivil=(SELECT IDEstadoCivil "
                              u"FROM EstadoCivil WHERE Descripcion='Casado/a')")));

    key(Qt::Key_F, Qt::ControlModifier);
    key(Qt::Key_A, Qt::ControlModifier);
    type("LEGÁL convi");
    key(Qt::Key_Return);
    // Enter alone deletes nothing.
    thenAnswer();
    key(Qt::Key_Delete);
    EXPECT_THAT(asked, HasSubstr("Conviviente legal"));
    EXPECT_EQ(legal(), "1");
    confirmDeletion();
    EXPECT_EQ(legal(), "0");

    then([] {
        const auto* bin = qobject_cast<QTableView*>(place());
        for (int row = 0; row < 9 && bin->currentIndex().siblingAtColumn(1).data() != "Conviviente legal";
             ++row)
            key(Qt::Key_Down);
        key(Qt::Key_Tab);
        key(Qt::Key_Space);
        key(Qt::Key_Escape);
    });
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(legal(), "1");
}

TEST_F(HostTest, a_bank_goes_and_comes_with_its_branches)
{
    school.centro->Execute(u"INSERT INTO Banco (IDBanco,Nombre,Numero) VALUES (900,'D''Or','9000')");
    school.centro->Execute(u"INSERT INTO Sucursal (IDSucursal,CodBanco,Codigo,Nombre) VALUES "
                           u"(901,900,'0001','Uno'),(902,900,'0002','Dos')");
    school.borrado->Execute(u"INSERT INTO Sucursal (IDSucursal) VALUES (901)");
    moveToDeleted(school, u"Banco", 900);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM Sucursal WHERE CodBanco=900"), "0");
    const auto gone = testing::Contains(testing::Field(&DeletedRow::name, u"D'Or"));
    EXPECT_THAT(deletedRows(*school.borrado), gone);

    school.centro->Execute(u"INSERT INTO Sucursal (IDSucursal,CodBanco) VALUES (902,1)");
    EXPECT_THROW(restore(school, u"Banco", 900), RuntimeError);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM Banco WHERE IDBanco=900"), "0");
    school.centro->Execute(u"DELETE FROM Sucursal WHERE IDSucursal=902");
    restore(school, u"Banco", 900);
    EXPECT_EQ(one(u"SELECT Nombre FROM Sucursal WHERE IDSucursal=902"), "Dos");
    EXPECT_THAT(deletedRows(*school.borrado), testing::Not(gone));

    // Whoever names a branch holds its bank.
    school.centro->Execute(u"INSERT INTO Cuenta (codSucursal,Numero) VALUES (902,'12')");
    const std::vector<Referrer> who = referrers(*school.centro, u"Banco", 900);
    ASSERT_EQ(who.size(), 1U);
    EXPECT_EQ(who.front().table, u"Cuenta");
    EXPECT_THAT(who.front().examples, testing::ElementsAre(u"12"));
}

TEST_F(HostTest, commands_follow_node_row_and_session)
{
    const auto enabled = [&](const char* name) {
        return child<QAction>(name).isVisible() && child<QAction>(name).isEnabled();
    };
    window->go(*nodeOf(u"frmEmisor"));
    EXPECT_TRUE(enabled("ordenante"));
    EXPECT_FALSE(enabled("sucursales"));
    window->go(*nodeOf(u"frmBanco"));
    EXPECT_TRUE(enabled("sucursales"));
    onlyLook();
    window->go(*nodeOf(u"frmPais"));
    EXPECT_FALSE(enabled("nuevo") || enabled("eliminar"));
    EXPECT_TRUE(enabled("modificar"));
    window->go(*nodeOf(u"frmInformeIndividual"));
    EXPECT_FALSE(enabled("nuevo") || enabled("eliminar"));
    EXPECT_FALSE(window->host().users().empty());
}

TEST_F(HostTest, tells_whoever_asks_which_version_it_is)
{
    QApplication::setApplicationVersion(QStringLiteral("7.8.9"));
    thenAnswer();
    window->findChild<QAction*>(QStringLiteral("acerca"))->trigger();
    EXPECT_THAT(asked, HasSubstr("zvhost 7.8.9"));
}

TEST_F(HostTest, a_row_that_another_station_deleted_is_not_opened)
{
    school.centro->Execute(u"DELETE FROM EstadoCivil");
    key(Qt::Key_Return);
    thenAnswer();
    key(Qt::Key_Return);
    EXPECT_THAT(asked, HasSubstr("otro puesto"));
    EXPECT_EQ(qobject_cast<QTableView*>(place())->model()->rowCount(), 0);
}

TEST_F(HostTest, a_row_opened_while_its_deletion_is_asked_about_stays)
{
    school.centro->Execute(u"INSERT INTO EstadoCivil VALUES (900,'Conviviente')");
    window->refresh();
    then([this] {
        thenAnswer();
        school.centro->Execute(
            u"INSERT INTO RegistroActivo VALUES ('frmEstadoCivil',900,7,'otra 1 1',CURRENT_TIMESTAMP)");
        key(Qt::Key_Tab);
        key(Qt::Key_Return);
    });
    key(Qt::Key_Delete);
    EXPECT_THAT(asked, HasSubstr(nameOfUser(7) + " desde "));
    EXPECT_THAT(asked, HasSubstr("en el puesto otra."));
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM EstadoCivil WHERE IDEstadoCivil=900"), "1");
}

TEST_F(HostTest, a_user_comes_with_his_profile)
{
    school.entrada->Execute(u"INSERT INTO Usuario (IDUsuario,Nombre,CodPerfil) VALUES (77,'Zoe',9)");
    thenAnswer("", {Qt::Key_End, Qt::Key_Return});
    key(Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(window->host().choices().user, 77);
    EXPECT_EQ(window->host().choices().profile, 9);
}

TEST_F(HostTest, lists_sort_numbers_find_words_and_export)
{
    constexpr ListColumn columns[] = {{u"Nombre"}, {u"Valor"}};
    const Row rows[] = {{1, {Value(u"=uno;\"a\""), Value(u"10,5")}}, {2, {Value(u"Álava"), Value(u"-9")}}};
    RowsModel model;
    model.show(columns, rows);
    model.sort(1, Qt::AscendingOrder);
    EXPECT_EQ(csvOf(model), "\xEF\xBB\xBFNombre;Valor\r\nÁlava;-9\r\n\"'=uno;\"\"a\"\"\";10,5\r\n");
    model.search(QStringLiteral("ALA"));
    EXPECT_EQ(model.rowCount(), 1);
}

TEST_F(HostTest, a_school_that_lacks_something_is_refused)
{
    const QString file =
        QDir::temp().filePath(QStringLiteral("zv-host-%1.db").arg(QCoreApplication::applicationPid()));
    const String url = u"sqlite:" + fromQt(file);
    createSchool(url);
    EXPECT_NO_THROW(openHost(url));
    openSchool(url).centro->executeNative(u"DROP TABLE Turno");
    // Its failure comes back from beside the screen.
    EXPECT_THROW(withProgress(nullptr, QString(), [&] { openHost(url); }), RuntimeError);
    for (const char* end : {".db", ".borrado.db", ".entrada.db"})
        QFile::remove(QString(file).replace(QStringLiteral(".db"), QString::fromLatin1(end)));
}

} // namespace zv::host
