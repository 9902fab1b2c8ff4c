#include "HostFixture.h"

#include "care/copies/Copies.h"
#include "data/Statement.h"
#include "session/cNombreNodo.h"
#include "zvhost/Deletion.h"
#include "zvhost/People.h"
#include "zvhost/Reminder.h"

#include <QClipboard>
#include <QHeaderView>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolBar>
#include <QTreeWidget>

namespace zv::host {

/// What the lists and what stands around them do for the person who works in them.
struct ListTest : HostTest {
    ListTest()
    {
        for (const char* each : {"901,'Zona alfa'", "902,'Zona beta'", "903,'Zona gama'"})
            school.centro->Execute(u"INSERT INTO EstadoCivil VALUES (" + fromUtf8(each) + u")");
        window->refresh();
        list().setFocus();
    }
    QTreeWidget& tree() { return child<QTreeWidget>("arbol"); }
    QAction& action(const char* name) { return child<QAction>(name); }
    std::string chosen() { return list().currentIndex().siblingAtColumn(0).data().toString().toStdString(); }
    std::string zonas() { return one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion LIKE 'Zona%'"); }
    /// Another station opens the row, or has closed it.
    void hold(int row, int user)
    {
        school.centro->Execute(
            statement(u"INSERT INTO RegistroActivo VALUES ('frmEstadoCivil',{},{},'SECRETARIA-2/1/2/3/4',{})",
                      {row, user, textLiteral(u"2024-09-12 08:30:00+99999999")}));
    }
    void leave() { school.centro->Execute(u"DELETE FROM RegistroActivo"); }
};

TEST_F(ListTest, what_was_deleted_is_told_and_comes_back)
{
    search("zona beta");
    confirmDeletion();
    EXPECT_EQ(zonas(), "2") << asked;
    EXPECT_THAT(done(), HasSubstr("Se ha eliminado «Zona beta» · <a"));

    search("");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(zonas(), "3");
    EXPECT_EQ(chosen(), "Zona beta");
    EXPECT_THAT(done(), HasSubstr("Se ha restaurado «Zona beta»"));
    EXPECT_FALSE(action("deshacer").isEnabled());

    // From the bin, and back into it: the last deleted one stands first there, and is chosen.
    confirmDeletion();
    key(Qt::Key_End);
    confirmDeletion();
    then([this] {
        const auto* bin = qobject_cast<QTableView*>(place());
        const auto cell = [&](int column) { return bin->model()->index(0, column).data().toString(); };
        EXPECT_EQ(bin->currentIndex().row(), 0);
        EXPECT_EQ(cell(1), QStringLiteral("Zona gama"));
        EXPECT_EQ(cell(2).left(10), QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy")));
        EXPECT_EQ(cell(3).toStdString(), nameOfUser(1));
        key(Qt::Key_F, Qt::ControlModifier);
        type("zona beta");
        key(Qt::Key_Down);
        EXPECT_EQ(bin->model()->rowCount(), 1);
        key(Qt::Key_Tab);
        key(Qt::Key_Space);
        key(Qt::Key_Escape);
    });
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(chosen(), "Zona beta");
    EXPECT_THAT(done(), HasSubstr("Se ha restaurado «Zona beta» en «Estados civiles»"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(zonas(), "1");
    // The steps before it are still there.
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(chosen(), "Zona gama");
}

TEST_F(ListTest, a_row_that_nobody_but_the_window_chose_stays_chosen_under_its_new_name)
{
    window->go(*nodeOf(u"frmPais"));
    window->go(*nodeOf(u"frmEstadoCivil"));
    ASSERT_EQ(list().currentIndex().row(), 0);
    thenAnswer("Zzz");
    action("modificar").trigger();
    EXPECT_EQ(chosen(), "Zzz");
    list().sortByColumn(0, Qt::DescendingOrder);
    list().sortByColumn(0, Qt::AscendingOrder);
    EXPECT_EQ(chosen(), "Zzz");
}

TEST_F(ListTest, window_and_questions_stay_within_the_screen)
{
    const QSize room = window->screen()->availableSize();
    EXPECT_TRUE(
        QRect({}, room - QSize(8, 40)).contains(QRect({}, window->size()))); // Its frame has room too.
    for (int row = 1000; row < 1040; ++row) {
        school.centro->Execute(statement(u"INSERT INTO EstadoCivil VALUES ({},'Zona')", {row}));
        hold(row, 7);
    }
    window->refresh();
    search("zona");
    key(Qt::Key_A, Qt::ControlModifier);
    then([&] {
        read();
        const QWidget* box = QApplication::activeModalWidget();
        EXPECT_LT(box->height(), room.height());
        for (const QPushButton* each : box->findChildren<QPushButton*>())
            EXPECT_TRUE(box->rect().contains(QRect(each->mapTo(box, QPoint()), each->size())));
        key(Qt::Key_Escape);
    });
    key(Qt::Key_Delete);
    EXPECT_THAT(asked, HasSubstr("Las demás se quedan"));
    EXPECT_EQ(zonas(), "43");
}

TEST_F(ListTest, several_rows_go_and_come_at_once_but_for_those_in_use)
{
    search("zona");
    hold(902, 7);
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(action("modificar").isEnabled());
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Zona alfa\nZona beta\nZona gama"));
    confirmDeletion();
    EXPECT_THAT(asked, testing::AllOf(HasSubstr("2 filas"), HasSubstr("«Zona beta» no se puede eliminar")));
    EXPECT_EQ(zonas(), "1");
    EXPECT_THAT(done(), HasSubstr("Se han eliminado 2 filas"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(zonas(), "3");
}

TEST_F(ListTest, the_line_of_what_was_done_is_reached_and_followed_by_keyboard)
{
    search("zona beta");
    confirmDeletion();
    auto& line = child<QLabel>("hecho");
    const QImage before = line.grab().toImage();
    for (int i = 0; i < 20 && place()->objectName() != "hecho"; ++i)
        key(Qt::Key_Tab);
    ASSERT_EQ(place()->objectName(), "hecho");
    EXPECT_NE(line.grab().toImage(), before);
    key(Qt::Key_Space);
    EXPECT_EQ(zonas(), "3");
    EXPECT_EQ(place()->objectName(), "lista");
}

TEST_F(ListTest, no_two_commands_of_a_menu_have_the_same_letter)
{
    window->go(*nodeOf(u"frmEmisor"));
    for (const QAction* menu : window->menuBar()->actions()) {
        QString letters;
        for (const QAction* each : menu->menu()->actions())
            if (const qsizetype at = each->text().indexOf(u'&'); each->isVisible() && at >= 0) {
                const QChar letter = each->text()[at + 1].toLower();
                EXPECT_FALSE(letters.contains(letter)) << each->text().toStdString();
                letters += letter;
            }
    }
}

TEST_F(ListTest, a_new_row_that_the_search_hides_is_shown)
{
    search("casado");
    thenAnswer("Nueva");
    key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(chosen(), "Nueva");
}

TEST_F(ListTest, keys_act_on_the_list_that_is_seen)
{
    tree().setFocus();
    // «Personal» and «Centro» are groups.
    type("p");
    EXPECT_EQ(tree().currentItem()->text(0), QStringLiteral("Profesiones"));
    type("ers");
    EXPECT_NE(tree().currentItem()->parent(), nullptr);
    window->go(*nodeOf(u"frmPais"));
    key(Qt::Key_Up);
    EXPECT_EQ(tree().currentItem()->text(0), QStringLiteral("Enfermedades"));
    // On a group there is no list, and nothing to make in it.
    tree().setCurrentItem(tree().topLevelItem(3));
    EXPECT_FALSE(action("nuevo").isEnabled() || action("modificar").isEnabled() || list().isVisible());

    window->go(*nodeOf(u"frmEstadoCivil"));
    list().setFocus();
    key(Qt::Key_End);
    EXPECT_EQ(chosen(), "Zona gama");
    key(Qt::Key_Home);
    EXPECT_EQ(list().currentIndex().row(), 0);
}

TEST_F(ListTest, a_row_that_somebody_has_open_is_marked_and_told_until_it_is_free)
{
    hold(902, 7);
    hold(903, 99);
    window->refresh();
    search("zona beta");
    EXPECT_FALSE(list().currentIndex().data(Qt::DecorationRole).isNull());
    for (const Qt::Key each : {Qt::Key_Delete, Qt::Key_Return}) {
        thenAnswer(); // Cancelar
        key(each);
        EXPECT_THAT(asked, testing::AllOf(HasSubstr(nameOfUser(7) + " desde "),
                                          HasSubstr("en el puesto SECRETARIA-2.")));
    }
    EXPECT_THAT(asked, HasSubstr("La tiene abierta "));
    window->followHeld();
    EXPECT_EQ(done(), "");
    leave();
    window->followHeld();
    EXPECT_THAT(done(), HasSubstr("«Zona beta» ya está libre"));
    EXPECT_TRUE(list().currentIndex().data(Qt::DecorationRole).isNull());
    EXPECT_EQ(People(school).name(99), QStringLiteral("el usuario 99"));
}

TEST_F(ListTest, a_session_of_consultation_asks_before_what_it_does_not_lock)
{
    onlyLook();
    window->go(*nodeOf(cNombreNodo::InfIndiv));
    tree().setFocus();
    key(Qt::Key_Return);
    thenAnswer();
    key(Qt::Key_Return);
    EXPECT_THAT(asked, HasSubstr("se guarda"));
}

TEST_F(ListTest, a_tutor_opens_her_section_and_sees_how_far_it_is)
{
    Choices choices = window->host().choices();
    choices.user = 3; // In the sample she tutors 2º A of primary education, and teaches elsewhere.
    choices.profile = 1;
    window->host().choose(choices);
    school.centro->Execute(u"DELETE FROM Alumno_InfInd");
    school.centro->Execute(
        u"DELETE FROM Alumno_InfIndPrim WHERE CodAlumno NOT IN (SELECT MIN(CodAlumno) FROM "
        u"Alumno_InfIndPrim)");
    window->go(*nodeOf(cNombreNodo::InfIndiv));
    search("2º de primaria 2º A");
    ASSERT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(list().model()->index(0, 3).data().toString().toStdString(),
              "1 de " + one(u"SELECT COUNT(*) FROM Alumno WHERE codseccion=3"));
    // A person closes what has opened, the last window first.
    QStringList opened;
    QTimer::singleShot(5000, window.get(), [&] { opened += QStringLiteral("too late"); });
    enter([&](QWidget& front) {
        if (opened.isEmpty() && front.objectName() == u"frmInformeIndividual")
            return;
        opened += front.objectName();
        front.close();
    });
    EXPECT_EQ(opened.join(u' '), QStringLiteral("frmInfIndPrim frmInformeIndividual"));
}

TEST_F(ListTest, buttons_keep_their_places)
{
    const auto places = [&] {
        QStringList all;
        const auto* bar = window->findChild<QToolBar*>();
        for (const char* each : {"nuevo", "modificar", "eliminar", "papelera", "sesion"})
            all += QString::number(bar->widgetForAction(&action(each))->geometry().left());
        return all.join(u' ').toStdString();
    };
    QApplication::processEvents();
    const std::string before = places();
    for (const StringView form : {u"frmEmisor", u"frmBanco", u"frmInformeIndividual"}) {
        window->go(*nodeOf(form));
        QApplication::processEvents();
        EXPECT_EQ(places(), before) << toUtf8(form);
    }
}

TEST_F(ListTest, a_backup_is_made_and_told)
{
    const QTemporaryDir folder;
    const String url = u"sqlite:" + fromQt(folder.filePath(QStringLiteral("colegio.db")));
    createSchool(url);
    window->use(std::make_unique<Host>(url, openSchool(url)));
    const QString copy = folder.filePath(QStringLiteral("una.zvcopia"));
    window->backUpTo(copy, QString());
    EXPECT_EQ(care::checkCopy(copy.toStdU16String()).tables, 137);
    EXPECT_THAT(done(), HasSubstr("Copia comprobada"));
    // From then on, and from the first day where there is none, a week goes by before anything is said.
    Remembered memory(Remembered::Where::nowhere);
    const auto said = [&](int days) {
        return Reminder(memory, window->host(), QDate::currentDate().addDays(days)).due().toStdString();
    };
    EXPECT_EQ(said(-20), "");
    EXPECT_EQ(said(-13), "");
    EXPECT_THAT(said(-12), HasSubstr("desde hace 8 días"));
    Reminder(memory, window->host(), QDate::currentDate().addDays(-12)).copied(copy);
    EXPECT_EQ(said(7), "") << "the file is of today";
    EXPECT_THAT(said(8), HasSubstr("de hace 8 días"));
    EXPECT_EQ(said(8), "") << "once a day";
}

TEST_F(ListTest, columns_use_the_width_there_is_until_one_is_dragged)
{
    window->go(*nodeOf(u"frmTipoMotivoBaja"));
    QApplication::processEvents();
    const auto whole = [&] {
        int width = 0;
        for (int column = 0; column < list().model()->columnCount(); ++column)
            width += list().columnWidth(column);
        return width;
    };
    EXPECT_EQ(whole(), list().viewport()->width());
    window->resize(window->width() + 200, window->height());
    QApplication::processEvents();
    EXPECT_EQ(whole(), list().viewport()->width());
    list().setColumnWidth(0, 33);
    window->resize(window->width() - 100, window->height());
    QApplication::processEvents();
    EXPECT_EQ(list().columnWidth(0), std::max(33, list().horizontalHeader()->minimumSectionSize()));
    key(Qt::Key_J, Qt::ControlModifier);
    EXPECT_EQ(whole(), list().viewport()->width());
}

TEST_F(ListTest, the_window_comes_back_as_it_was_left)
{
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    const auto open = [&] {
        window = std::make_unique<MainWindow>(Remembered::Where::settings);
        window->use(std::make_unique<Host>(u"sqlite:colegio.db", school));
        home = window.get();
        window->show();
        QApplication::processEvents();
    };
    open();
    window->resize(780, 555);
    window->go(*nodeOf(u"frmBanco"));
    list().sortByColumn(1, Qt::DescendingOrder);
    list().setColumnWidth(0, 123);
    search("a");
    window->go(*nodeOf(u"frmPais"));
    window->go(*nodeOf(u"frmBanco"));
    thenAnswer("", {Qt::Key_End, Qt::Key_Return});
    key(Qt::Key_U, Qt::ControlModifier);
    const Integer user = window->host().choices().user;
    EXPECT_NE(user, 1);
    window->close();
    open();
    EXPECT_EQ(window->size(), QSize(780, 555));
    EXPECT_EQ(tree().currentItem()->text(0), QStringLiteral("Bancos"));
    EXPECT_EQ(list().columnWidth(0), 123);
    EXPECT_EQ(list().horizontalHeader()->sortIndicatorSection(), 1);
    EXPECT_EQ(child<QLineEdit>("buscar").text(), QStringLiteral("a"));
    EXPECT_EQ(window->host().choices().user, user);
    // A user who has gone is not brought back.
    window->close();
    school.entrada->Execute(statement(u"DELETE FROM Usuario WHERE IDUsuario={}", {user}));
    open();
    EXPECT_EQ(window->host().choices().user, 1);
    window->close();
}

TEST_F(ListTest, the_manual_is_searched)
{
    const auto found = [&](const char* words) {
        QString shown;
        then([&] {
            type(words);
            key(Qt::Key_Return);
            QWidget* search = QApplication::activeModalWidget();
            key(Qt::Key_Return);
            const auto* page = search->findChild<QTextBrowser*>();
            shown = page == nullptr ? QString() : page->textCursor().block().text();
            search->close();
        });
        key(Qt::Key_F1, Qt::ControlModifier);
        return shown.toStdString();
    };
    EXPECT_TRUE(found("programador de tareas").starts_with("Póngala en el programador de tareas"));
    EXPECT_EQ(found("¿como se imprime un informe?"), "Imprimir los informes") << "its title, by other words";
    EXPECT_EQ(found("513"), "513") << "not where another message speaks of it";
    EXPECT_EQ(found("bancos "), "Bancos");
    EXPECT_EQ(found("campos obligatorios"), "Campos obligatorios") << "in the index";
}

TEST_F(ListTest, times_are_said_as_people_say_them)
{
    const auto said = [](const QDateTime& time) {
        return saidTime(time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))).toStdString();
    };
    const QDateTime today(QDate::currentDate(), QTime(7, 38));
    EXPECT_EQ(said(today), "las 7:38");
    EXPECT_EQ(said(QDateTime(today.date().addDays(-1), QTime(1, 5))), "ayer a la 1:05");
    EXPECT_EQ(said(QDateTime(QDate(2024, 9, 12), QTime(8, 0))), "el 12 de septiembre a las 8:00");
    EXPECT_EQ(saidTime(QStringLiteral("nunca")), QStringLiteral("nunca"));
}

} // namespace zv::host
