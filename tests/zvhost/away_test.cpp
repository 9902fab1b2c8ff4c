#include "HostFixture.h"

#include "journal/Journals.h"
#include "journal/Recorder.h"
#include "runtime/OwnerOnly.h"
#include "zvhost/ServerWait.h"

#include <filesystem>
#include <thread>

namespace zv::host {

using testing::ContainsRegex;

/// A connection whose server is away while writing statements wait for it.
struct Weak final : ConnectionDecorator {
    using ConnectionDecorator::ConnectionDecorator;
    RecordsetPtr Execute(StringView statement) override
    {
        const bool writes = statement.starts_with(u"Insert into EstadoCivil");
        if (writes && away && waitsForServers())
            away->givenUp = !waitForServer(*away);
        if (writes && away && away->givenUp)
            throw DataError(failure::connectionLost, "08001", u"ausente", statement);
        return inner()->Execute(statement);
    }
    std::optional<ServerAway> away;
};

/// A new row is accepted while the server is away.
struct AwayTest : HostTest {
    int ended = 0;
    int attempts = 0;
    ServerWait wait{screen, [this] { ++ended; }};
    std::shared_ptr<Weak> weak = std::make_shared<Weak>(school.centro);

    AwayTest()
    {
        School watched = school;
        watched.centro = weak;
        window->use(std::make_unique<Host>(u"sqlite:colegio.db", watched));
        const auto ago = std::chrono::steady_clock::now() - std::chrono::seconds(12);
        weak->away = ServerAway{
            ago, {false, u"connection refused"}, false, [this] {
                EXPECT_NE(std::this_thread::get_id(), person);
                return ++attempts < 3 ? std::optional(Absence{true, u"FATAL: starting up"}) : std::nullopt;
            }};
    }
    /// Types the row and accepts it; `meets` is what the person does once the window says so.
    void accept(const std::function<void()>& meets)
    {
        then([meets] {
            type("Conviviente");
            then(meets);
            key(Qt::Key_Return);
        });
        key(Qt::Key_N, Qt::ControlModifier);
    }
    static QWidget& box() { return *QApplication::activeModalWidget(); }
    static std::string said()
    {
        std::string text = box().objectName().toStdString();
        for (const QLabel* each : box().findChildren<QLabel*>())
            text += "|" + each->text().toStdString();
        return text;
    }
    /// Presses the button so many tabs behind the one that has the focus.
    static void pressAfter(int tabs)
    {
        while (tabs-- > 0)
            key(Qt::Key_Tab);
        key(Qt::Key_Return);
    }
    std::string saved() { return one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion='Conviviente'"); }
    const std::thread::id person = std::this_thread::get_id();
};

TEST_F(AwayTest, the_window_waits_by_itself_and_the_save_goes_on)
{
    accept([this] {
        EXPECT_THAT(said(), ContainsRegex(
                                "sinServidor.El servidor no responde desde hace 1[23] s.connection refused"));
        QWidget* dialog = box().parentWidget();
        const auto* field = dialog->findChild<QLineEdit*>();
        for (QWidget* other : {dialog, home}) {
            QTest::keyClick(other->windowHandle(), Qt::Key_X);
            QTest::mouseClick(other->windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
        }
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Escape);
        QApplication::processEvents();
        EXPECT_EQ(field->text().toStdString(), "Conviviente") << "what is behind the window gets nothing";
        box().close();
        EXPECT_EQ(attempts, 0);
        key(Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return said().find("no deja entrar") != std::string::npos; }, 900))
            << "«Esperar» tries at once";
        key(Qt::Key_Escape);
        ASSERT_TRUE(QTest::qWaitFor([&] { return attempts == 2; }, 900));
        ASSERT_TRUE(QTest::qWaitFor([] { return box().objectName() != "sinServidor"; }, 4000)) << "by itself";
    });
    EXPECT_EQ(attempts, 3);
    EXPECT_EQ(saved(), "1");
}

TEST_F(AwayTest, who_goes_on_without_it_sees_what_was_seen_before_and_is_asked_again_after_three_messages)
{
    std::string seen;
    for (int row = 0; row < 5; ++row)
        accept([&] {
            seen += box().objectName().toStdString() + " ";
            if (seen.ends_with("sinServidor ")) {
                thenAnswer();
                pressAfter(1);
                return;
            }
            read();
            key(Qt::Key_Return);
        });
    EXPECT_EQ(seen, "sinServidor   sinServidor  ");
    EXPECT_THAT(asked, HasSubstr("ERROR al insertar un registro"));
    EXPECT_EQ(attempts, 0);
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(saved(), "0");
}

TEST_F(AwayTest, who_closes_the_program_finds_what_was_typed)
{
    const std::filesystem::path state =
        std::filesystem::temp_directory_path() / ("zv-estado-" + std::to_string(getpid()));
    setenv("XDG_STATE_HOME", state.c_str(), 1);
    accept([&] {
        then([&] {
            read();
            EXPECT_THAT(asked, HasSubstr("no se ha podido apuntar")) << "nothing keeps drafts here";
            key(Qt::Key_Escape);
            then([this] {
                EXPECT_THAT(said(), HasSubstr("El servidor no responde"));
                thenAnswer();
                pressAfter(1);
            });
        });
        pressAfter(2);
    });
    EXPECT_EQ(ended, 0);
    unsetenv("ZV_DIARIO");
    screen.keepDrafts();
    setenv("ZV_DIARIO", "no", 1);
    weak->away->givenUp = false;
    std::filesystem::path file;
    accept([&] {
        file = journal::journalFiles(journal::recordedFolder()).at(0);
        copy_file(file, state / "muerto");
        thenAnswer();
        pressAfter(2);
    });
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(saved(), "0");
    EXPECT_THAT(journal::journalFiles(journal::recordedFolder()), testing::IsEmpty()) << "it did close here";
    rename(state / "muerto", file);
    EXPECT_FALSE(owneronly::openToOthers(file));
    weak->away.reset();
    window->use(std::make_unique<Host>(u"sqlite:otro.db", school));
    EXPECT_THAT(notice(),
                HasSubstr("en «Nuevo Estado Civil» del centro que está o estaba en «sqlite:colegio.db»"));
    key(Qt::Key_T, Qt::AltModifier);
    EXPECT_THAT(notice(),
                ContainsRegex("^Hay textos sin guardar de (hoy|ayer) .* en «Nuevo Estado Civil»: 1 texto$"));
    then([] {
        key(Qt::Key_R, Qt::AltModifier);
        key(Qt::Key_Return);
    });
    key(Qt::Key_B, Qt::AltModifier);
    EXPECT_EQ(saved(), "1");
    EXPECT_EQ(notice(), "");
    EXPECT_THAT(journal::journalFiles(journal::recordedFolder()), testing::IsEmpty());
    journal::recording(false);
    std::filesystem::remove_all(state);
    unsetenv("XDG_STATE_HOME");
}

} // namespace zv::host
