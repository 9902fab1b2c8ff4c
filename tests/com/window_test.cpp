#include "com/Host.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <clocale>
#include <optional>
#include <thread>

using namespace zv;
using namespace zv::com;

namespace {

/// Presses Enter on nothing, is told so, writes a text and presses Enter again: whatever is in front.
struct Person {
    std::string told;
    QTimer reading, typing;
    Person()
    {
        reading.callOnTimeout([this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                told = box->text().toStdString();
                box->accept();
            }
        });
        typing.callOnTimeout([this] {
            const QWidget* window = QApplication::activeModalWidget();
            QWidget* at = window == nullptr ? nullptr : window->focusWidget();
            if (at == nullptr)
                return;
            if (!told.empty())
                QTest::keyClicks(at, "Soltera");
            QTest::keyClick(at, Qt::Key_Return);
        });
        reading.start(10);
        typing.start(10);
    }
};

} // namespace

TEST(Window, is_the_toolkits_with_an_application_of_the_host_or_without)
{
    const Folder folder;
    folder.create();
    setenv("LC_ALL", "C.UTF-8", 1);
    const auto play = [&](const char* platform, ZvResult expected) {
        platform == nullptr ? unsetenv("QT_QPA_PLATFORM") : setenv("QT_QPA_PLATFORM", platform, 1);
        const Library data(ZV_DATOS);
        const Library library(ZV_SERVIDOR);
        const client::Object connection = client::openConnection(data, folder.url());
        const auto face = dispatchOf(std::make_shared<Session>(objectOf(connection)));
        const auto facade = facadeOf(library);
        const auto elsewhere = [&] {
            ZvResult result = 0;
            std::thread([&] { result = facade.get()->vtbl->BloquearBanco(facade.get()); }).join();
            return result == ZV_E_WRONG_THREAD;
        };
        // Where the host has an application, other threads are refused; one that has ended holds nothing up.
        EXPECT_EQ(elsewhere(), qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr);
        EXPECT_EQ(handOver(facade, face), ZV_OK);
        std::optional<Person> person;
        if (expected == ZV_OK)
            person.emplace();
        EXPECT_EQ(facade.get()->vtbl->ActivarFormulario(facade.get(), 65), expected);
        EXPECT_TRUE(!person || !person->told.empty());
        person.reset();
        EXPECT_EQ(elsewhere(), expected == ZV_OK);
        const client::Value rows =
            connection.call("Execute", "Select * From EstadoCivil Where Descripcion='Soltera'");
        EXPECT_EQ(rows.object().get("EOF").truth(), expected != ZV_OK);
        connection.call("Execute", "Delete * From EstadoCivil");
    };
    unsetenv("WAYLAND_DISPLAY");
    setenv("DISPLAY", ":7777", 1); // Named, but not there.
    play(nullptr, ZV_FAILURE_BASE + 5);
    play("offscreen", ZV_OK);
    EXPECT_EQ(QCoreApplication::instance(), nullptr) << "the library kept its application";
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    int count = 1;
    char name[] = "anfitrion";
    char* words[] = {name, nullptr};
    {
        const QCoreApplication windowless(count, words);
        play("offscreen", ZV_FAILURE_BASE + 5);
    }
    const QApplication own(count, words);
    play("offscreen", ZV_OK);
}

TEST(Window, whose_application_is_gone_is_a_failure_with_a_number)
{
    const Folder folder;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const auto session = dispatchOf(std::make_shared<Session>(ObjectPtr()));
    const auto messageOf = [&](const Held<Zv_cAsignarDatos>& facade) {
        const ZvResult handed = handOver(facade, session);
        ZvBool free = 0; // There are no connections: that is told of in a message.
        return handed < 0 ? handed : facade.get()->vtbl->Eliminar(facade.get(), 52, &free);
    };
    const auto shown = [&](const Held<Zv_cAsignarDatos>& facade) {
        EXPECT_EQ(facade.get()->vtbl->BloquearBanco(facade.get()), ZV_OK); // Now there is an application.
        const Person person;
        EXPECT_EQ(messageOf(facade), ZV_OK);
        EXPECT_FALSE(person.told.empty());
    };
    const auto gone = [&](const Library& library, Held<Zv_cAsignarDatos>& facade) {
        EXPECT_EQ(messageOf(facade), ZV_FAILURE_BASE + 5);
        facade = {};
        EXPECT_EQ(library.raw().canUnloadNow(), ZV_OK);
    };
    int count = 1;
    char name[] = "anfitrion";
    char* words[] = {name, nullptr};
    std::optional<QApplication> application(std::in_place, count, words);
    const Library library(ZV_SERVIDOR);
    auto facade = facadeOf(library);
    shown(facade);
    application.reset();
    gone(library, facade);
    // The same with the application of another copy of the library.
    fs::copy_file(ZV_SERVIDOR, folder.path / "copia.so");
    {
        const Library copy((folder.path / "copia.so").c_str());
        const auto first = facadeOf(copy);
        shown(first);
        facade = facadeOf(library);
        shown(facade);
    }
    gone(library, facade);
    facade = facadeOf(library);
    shown(facade);
    unsetenv("QT_QPA_PLATFORM");
}
