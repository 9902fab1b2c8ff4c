#include "HostFixture.h"

#include "qt/Walker.h"
#include "session/cNombreNodo.h"

#include <QMenu>
#include <QToolBar>

namespace zv::host {

/// Each window of the host before a person who has a keyboard and hears what a screen reader says.
struct HostReader : HostTest {
    std::set<std::string> heard;

    /// Two rows of the list that is shown at first, one of which another user has open.
    void openElsewhere()
    {
        school.centro->Execute(u"INSERT INTO EstadoCivil VALUES (900,'Conviviente'),(901,'Zona')");
        school.centro->Execute(
            u"INSERT INTO RegistroActivo VALUES ('frmEstadoCivil',901,7,'otra 1 1',CURRENT_TIMESTAMP)");
        window->refresh();
    }
    void walk(QWidget& front)
    {
        QApplication::processEvents();
        const std::string name =
            (front.objectName().isEmpty() ? front.windowTitle() : front.objectName()).toStdString();
        EXPECT_FALSE(front.windowTitle().isEmpty()) << name;
        heard.insert(name);
        test::Stops stops;
        for (QWidget* each : front.findChildren<QWidget*>())
            if (each->window() == &front && each->isVisible() && each->isEnabled() &&
                (each->focusPolicy() & Qt::TabFocus) != 0 && each->focusProxy() == nullptr) {
                stops.insert(each);
                test::hear(*each, name + "." + each->objectName().toStdString());
            }
        test::goRound(front, stops, [](QWidget&) {});
    }
    /// Of the window that the keys open; `more` does what leads on from it, before it is closed.
    void walkOpened(int code, Qt::KeyboardModifiers held = {}, const std::function<void()>& more = {})
    {
        then([&] {
            walk(*QApplication::activeModalWidget());
            if (more)
                more();
            key(Qt::Key_Escape);
        });
        key(code, held);
    }
    void walkHelp(QWidget& owner)
    {
        auto* help = owner.findChild<QDialog*>(QString(), Qt::FindDirectChildrenOnly);
        ASSERT_NE(help, nullptr);
        walk(*help);
        help->close();
    }
};

TEST_F(HostReader, every_control_of_the_list_and_of_what_deletes_is_reached_read_and_left)
{
    openElsewhere();
    walk(*window);
    walkOpened(Qt::Key_R, Qt::ControlModifier); // The bin, with nothing in it but what others deleted.
    list().setFocus();
    type("zona");
    key(Qt::Key_Return);
    const QAccessibleInterface& held = *test::hear(list(), "held").tableInterface()->cellAt(0, 0);
    EXPECT_EQ(held.text(QAccessible::Name), QStringLiteral("Zona, en uso"));
    EXPECT_TRUE(held.text(QAccessible::Description).contains(QString::fromStdString(nameOfUser(7))));
    walkOpened(Qt::Key_Return); // In use.
    walkOpened(Qt::Key_Delete); // Refused.
    search("soltero");
    bool walked = false;
    const auto acts = [&](QWidget& front) {
        if (const auto* box = qobject_cast<QMessageBox*>(&front)) {
            box->buttons().front()->click();
        } else if (front.objectName() == u"sustituir" && !std::exchange(walked, true)) {
            walk(front);
            key(Qt::Key_Escape);
        }
    };
    enter(acts, Qt::Key_Delete); // In use: another in its place.
    search("conviv");
    walkOpened(Qt::Key_Delete); // Asked about.
    confirmDeletion();
    EXPECT_TRUE(child<QWidget>("hecho").focusPolicy() & Qt::TabFocus);
    walk(*window); // With the line of what was done.
    walkOpened(Qt::Key_R, Qt::ControlModifier);
    EXPECT_THAT(heard, testing::ElementsAre("Eliminar", "Fila en uso", "No se puede eliminar", "papelera",
                                            "sustituir", "zvhost"));
}

TEST_F(HostReader, every_control_of_the_session_and_of_the_manual_is_reached_read_and_left)
{
    openElsewhere();
    walkOpened(Qt::Key_L, Qt::ControlModifier, [&] { // Rows in use, and whether to free one.
        key(Qt::Key_Tab);
        walkOpened(Qt::Key_Space);
    });
    walkOpened(Qt::Key_U, Qt::ControlModifier);
    walkOpened(Qt::Key_O, Qt::ControlModifier);
    walkOpened(Qt::Key_F1, Qt::ControlModifier, [&] {
        key(Qt::Key_Return);
        key(Qt::Key_Return);
        walkHelp(*QApplication::activeModalWidget());
    });
    key(Qt::Key_F1);
    walkHelp(*window);
    EXPECT_THAT(heard,
                testing::ElementsAre("Liberar", "ayuda", "buscarAyuda", "filasEnUso", "inicio", "sesion"));
}

TEST_F(HostReader, every_control_of_every_node_and_of_what_goes_wrong_is_reached_read_and_left)
{
    for (const Node& node : nodes()) {
        window->go(node);
        walk(*window);
    }
    window->go(progressNode());
    walk(*window);
    onlyLook();
    window->go(*nodeOf(cNombreNodo::InfIndiv));
    list().setFocus();
    walkOpened(Qt::Key_Return); // What is not locked.
    child<QWidget>("arbol").setFocus();
    school.centro->executeNative(u"DROP TABLE Seccion");
    window->go(*nodeOf(cNombreNodo::NotaConsejoOrientador));
    walk(*window); // The button alone.
    school.centro->executeNative(u"DROP TABLE Pais");
    const auto walkFront = [&] {
        walk(*QApplication::activeModalWidget());
        key(Qt::Key_Escape);
    };
    then(walkFront);
    window->go(*nodeOf(u"frmPais"));
    then(walkFront);
    window->findChild<QAction*>(QStringLiteral("acerca"))->trigger();
    EXPECT_THAT(heard, testing::ElementsAre("Acerca de zvhost", "Informes individuales", "No se ha podido",
                                            "zvhost"));
}

TEST_F(HostReader, buttons_say_their_keys_and_what_was_done_is_taken_back_by_its_action)
{
    // The list of the node that is chosen, and its rows.
    QAccessibleTableInterface& nodes =
        *QAccessible::queryAccessibleInterface(&child<QWidget>("arbol"))->tableInterface();
    for (const int row : {3, 1}) {
        QAccessibleInterface& node = *nodes.cellAt(row, 0);
        node.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        EXPECT_EQ(list().accessibleName(), node.text(QAccessible::Name));
    }
    const auto* bar = window->findChild<QToolBar*>();
    for (QAction* each : bar->actions()) {
        if (each->isSeparator())
            continue;
        const auto& button = *QAccessible::queryAccessibleInterface(bar->widgetForAction(each));
        EXPECT_FALSE(button.text(QAccessible::Name).isEmpty()) << each->objectName().toStdString();
        EXPECT_TRUE(button.text(QAccessible::Description)
                        .contains(each->shortcut().toString(QKeySequence::NativeText)));
        // No button takes the focus: a menu has its command for the keyboard.
        EXPECT_TRUE(std::ranges::any_of(each->associatedObjects(), [](QObject* in) {
            return qobject_cast<QMenu*>(in) != nullptr;
        })) << each->objectName().toStdString();
    }
    school.centro->Execute(u"INSERT INTO EstadoCivil VALUES (900,'Abandonado')");
    window->refresh();
    const auto count = [this] { return one(u"SELECT COUNT(*) FROM EstadoCivil WHERE IDEstadoCivil=900"); };
    confirmDeletion();
    ASSERT_EQ(count(), "0");
    QAccessibleInterface& done = *QAccessible::queryAccessibleInterface(&child<QWidget>("hecho"));
    EXPECT_EQ(done.text(QAccessible::Name),
              QStringLiteral("Se ha eliminado «Abandonado» · Deshacer (Ctrl+Z)"));
    done.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([&] { return count() == "1"; }, 1000));
    EXPECT_EQ(done.role(), QAccessible::StaticText); // Nothing is left to follow.
}

} // namespace zv::host
