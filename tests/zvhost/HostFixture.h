#pragma once

#include "data/Schools.h"
#include "data/history/HistoryEngine.h"
#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "qt/QtDesktop.h"
#include "qt/QtText.h"
#include "qt/Screen.h"
#include "runtime/Single.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"
#include "zvhost/MainWindow.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>
#include <QStandardPaths>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

namespace zv::host {

using testing::HasSubstr;

inline QByteArray csvOf(const RowsModel& list)
{
    QBuffer bytes;
    EXPECT_TRUE(bytes.open(QIODevice::WriteOnly) && list.shownList().writeCsv(bytes));
    return bytes.data();
}

/// The host's window on a sample school, and a person who has only the keyboard.
struct HostTest : testing::Test {
    QtDesktop screen;
    School school;
    std::unique_ptr<MainWindow> window;
    static inline QWidget* home = nullptr;

    explicit HostTest(StringView url = u"sqlite:")
    {
        QStandardPaths::setTestModeEnabled(true);
        registerEngine(sqliteEngine());
        registerEngine(historyEngine());
        registerCipher([key = CipherKey::random()](bool) { return key; });
        installModule();
        useDesktop(&screen);
        school = temporarySchool(url);
        fillSample(school);
        window = std::make_unique<MainWindow>(std::make_unique<Host>(u"sqlite:colegio.db", school));
        home = window.get();
        window->show();
        window->activateWindow();
        QApplication::processEvents();
    }
    ~HostTest() override
    {
        window.reset();
        resetSingles();
        useDesktop(nullptr);
    }

    static void key(int key, Qt::KeyboardModifiers with = {})
    {
        QTest::keyClick(place(), Qt::Key(key), with);
    }
    static void type(const char* text)
    {
        for (const QChar each : QString::fromUtf8(text))
            QTest::keyClicks(place(), each);
    }
    static QWidget* place()
    {
        QWidget* front = QApplication::activeModalWidget();
        if (front == nullptr) {
            // A window manager would do it.
            front = home;
            if (!home->isActiveWindow()) {
                home->activateWindow();
                EXPECT_TRUE(QTest::qWaitForWindowActive(home));
            }
        }
        QWidget* focus = front->focusWidget();
        return focus == nullptr ? front : focus;
    }
    /// What a person does in the window that opens next; it has to be closed then.
    static void then(const std::function<void()>& acts)
    {
        place();
        QTimer::singleShot(0, [acts] {
            ASSERT_TRUE(QTest::qWaitFor([] {
                QWidget* modal = QApplication::activeModalWidget();
                if (modal == nullptr)
                    return false;
                modal->activateWindow();
                return modal->isActiveWindow();
            }));
            const QPointer<QWidget> modal = QApplication::activeModalWidget();
            acts();
            if (modal != nullptr && modal->isVisible()) {
                ADD_FAILURE() << modal->objectName().toStdString() << " is still open";
                modal->close();
            }
        });
    }
    std::string asked;
    /// Notes what the message box says before its button is pressed.
    void read()
    {
        const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        asked = box == nullptr ? "" : box->text().toStdString();
    }
    /// Reads the message box that opens next, or types into the dialog, and presses those keys in it.
    void thenAnswer(const char* typed = "", const std::vector<Qt::Key>& keys = {Qt::Key_Return})
    {
        then([this, typed, keys] {
            read();
            type(typed);
            for (const Qt::Key each : keys)
                key(each);
        });
    }
    void confirmDeletion()
    {
        thenAnswer("", {Qt::Key_Tab, Qt::Key_Return});
        key(Qt::Key_Delete);
    }
    /// The key opens a window that leads to others: what a person does with the one in front, whenever he
    /// looks.
    void enter(const std::function<void(QWidget& front)>& acts, Qt::Key opens = Qt::Key_Return)
    {
        QTimer person;
        QObject::connect(&person, &QTimer::timeout, window.get(), [&] {
            if (QWidget* front = QApplication::activeModalWidget())
                acts(*front);
        });
        person.start(20);
        key(opens);
    }
    void search(const char* words)
    {
        auto& field = child<QLineEdit>("buscar");
        field.setFocus();
        field.setText(QString::fromUtf8(words));
        key(Qt::Key_Return);
    }
    /// From now on nothing may be changed.
    void onlyLook()
    {
        Choices choices = window->host().choices();
        choices.readOnly = true;
        window->host().choose(choices);
    }
    template <class W>
    W& child(const char* name)
    {
        return *window->findChild<W*>(QString::fromLatin1(name));
    }
    QTableView& list() { return child<QTableView>("lista"); }
    std::string done() { return child<QLabel>("hecho").text().toStdString(); }
    /// What the bar over the list says; "" where there is none.
    std::string notice()
    {
        const auto& bar = child<QWidget>("aviso");
        return bar.isVisible() ? bar.findChild<QLabel*>("avisoTexto")->text().toStdString() : "";
    }
    /// Name of the member of staff behind a user of the sample.
    std::string nameOfUser(int user)
    {
        return one(
            u"SELECT Nombre + ' ' + Apellido_1 + ' ' + Apellido_2 AS Entero FROM Personal WHERE CodUsuario=" +
            fromUtf8(std::to_string(user)));
    }
    std::string one(StringView query)
    {
        const RecordsetPtr rows = school.centro->Execute(query);
        return rows->Eof() ? "" : toUtf8(String() + rows->row().front());
    }
};

} // namespace zv::host
