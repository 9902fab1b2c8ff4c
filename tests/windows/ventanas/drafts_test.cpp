#include "data/sample/SampleSchool.h"
#include "journal/Journals.h"
#include "module/Hosted.h"
#include "module/Section.h"
#include "win32/Win32Desktop.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <string>

using namespace zv;
using namespace zv::win32;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

/// What is typed, in which dialog's field.
struct Opened {
    Byte node;
    Byte action;
    Long row;
    StringView dialog;
    StringView field;
};
constexpr Opened openings[] = {
    {65, 2, 1, u"frmEstadoCivil", u"txtIdioma"},
    {cNombreNodo::Turnos, 1, 0, u"frmTurno", u"txtTurno"},
    {cNombreNodo::InfIndiv, 1, 0, u"frmInfIndESO", u"txtCognitiva"},
};
constexpr int most = 40;
constexpr UINT_PTR answering = 77;

/// A person at windows of the system, in a school on the disk, with a state folder of his own.
struct Ventanas : testing::Test {
    struct Hand final : Win32Desktop {
        std::function<void(FormWindow&)> does;
        void runWindow(FormWindow& window) override
        {
            window.ready();
            does(window);
            if (window.alive() && window.form().Visible())
                window.form().Unload();
        }
    };
    std::filesystem::path created;
    School school;
    std::unique_ptr<Hand> hand = std::make_unique<Hand>();

    Ventanas()
    {
        if (_wgetenv(L"ZV_LUGAR") == nullptr) {
            created = std::filesystem::temp_directory_path() / ("zv" + std::to_string(GetCurrentProcessId()));
            std::filesystem::create_directory(created);
            _wputenv_s(L"ZV_LUGAR", created.c_str());
        }
        const std::filesystem::path place = _wgetenv(L"ZV_LUGAR");
        _wputenv_s(L"XDG_STATE_HOME", (place / "estado").c_str());
        registerEngine(sqliteEngine());
        installModule();
        const String url = u"sqlite:" + (place / "colegio.db").u16string();
        if (!created.empty())
            createSchool(url, fillSampleSchool);
        school = openSchool(url);
        useDesktop(hand.get());
        hand->keepDrafts();
    }
    ~Ventanas() override
    {
        resetSingles();
        useDesktop(nullptr);
        hand.reset();
        school = {};
        if (created.empty())
            return;
        _wputenv_s(L"ZV_LUGAR", L"");
        std::error_code ignored;
        std::filesystem::remove_all(created, ignored);
    }

    void open(const Opened& what, const std::function<void(FormWindow&)>& does)
    {
        hand->does = [&](FormWindow& window) {
            if (window.form().Name() == what.dialog)
                return does(window);
            test::chooseSection(window, 3);
        };
        test::openNode(school, what.node, what.action, what.row);
    }
    static TextBox& field(FormWindow& window, const Opened& what)
    {
        return dynamic_cast<TextBox&>(*window.form().find(what.field));
    }
    static void type(FormWindow& window, TextBox& box, char16_t letter)
    {
        window.act([&](Acts& acts) { return acts.focus(box); });
        send(window.viewOf(box).handle(), WM_CHAR, letter, 1);
    }
    /// A key with another held down, at what has the focus; then what it put off is done.
    static void press(FormWindow& window, int held, WPARAM key)
    {
        std::array<BYTE, 256> before{};
        GetKeyboardState(before.data());
        std::array<BYTE, 256> now{};
        now.at(static_cast<std::size_t>(held)) = 0x80;
        SetKeyboardState(now.data());
        const Control* at = window.form().ActiveControl();
        send(window.viewOf(*at).handle(), held == VK_MENU ? WM_SYSKEYDOWN : WM_KEYDOWN, key, 1);
        SetKeyboardState(before.data());
        window.runLater();
    }
    /// The first text that is seen and that nobody can change.
    static std::string shown(HWND window)
    {
        std::string shown;
        const auto look = [](HWND child, LPARAM data) -> BOOL {
            std::array<wchar_t, 400> text{};
            if (IsWindowVisible(child) == 0 || GetClassNameW(child, text.data(), 400) == 0 ||
                narrow(text.data(), wcslen(text.data())) != u"Static" ||
                GetWindowTextW(child, text.data(), 400) == 0)
                return TRUE;
            *reinterpret_cast<std::string*>(data) = toUtf8(narrow(text.data(), wcslen(text.data())));
            return FALSE;
        };
        EnumChildWindows(window, look, reinterpret_cast<LPARAM>(&shown));
        return shown;
    }
    /// Starts this program again, which types in that dialog until it is killed, so long after its first act.
    /// How many acts it told of; `alive` runs while it is.
    static int dies(std::size_t which, DWORD life, const std::function<void()>& alive)
    {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE from = nullptr;
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        EXPECT_NE(CreatePipe(&from, &start.hStdOutput, &inherited, 0), 0);
        SetHandleInformation(from, HANDLE_FLAG_INHERIT, 0);
        _wputenv_s(L"ZV_MUERE", std::to_wstring(which).c_str());
        std::wstring own(0x8000, L'\0');
        own.resize(GetModuleFileNameW(nullptr, own.data(), 0x8000));
        std::wstring line = L"\"" + own +
                            L"\" --gtest_filter=Ventanas.DISABLED_child --gtest_brief=1 "
                            L"--gtest_also_run_disabled_tests";
        PROCESS_INFORMATION child{};
        EXPECT_NE(
            CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &child),
            0);
        CloseHandle(start.hStdOutput);
        int done = 0;
        char byte = 0;
        DWORD count = 0;
        const auto readOn = [&] {
            const bool more = ReadFile(from, &byte, 1, &count, nullptr) != 0 && count == 1;
            done += more && byte == '\1';
            return more;
        };
        while (done == 0 && readOn()) {
        }
        alive();
        Sleep(life);
        TerminateProcess(child.hProcess, 9);
        WaitForSingleObject(child.hProcess, INFINITE);
        while (readOn()) {
        }
        for (const HANDLE each : {from, child.hProcess, child.hThread})
            CloseHandle(each);
        return done;
    }
};

/// The process that is killed: tells of each letter, once it is typed, by a byte.
TEST_F(Ventanas, DISABLED_child)
{
    const Opened& what = openings[std::stoul(_wgetenv(L"ZV_MUERE"))];
    open(what, [&](FormWindow& window) {
        TextBox& box = field(window, what);
        for (int letter = 0; letter < most; ++letter) {
            type(window, box, static_cast<char16_t>(u'a' + letter % 26));
            DWORD written = 0;
            WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), "\1", 1, &written, nullptr);
            Sleep(3);
        }
        Sleep(INFINITE);
    });
}

TEST_F(Ventanas, what_was_typed_when_the_program_was_killed_is_offered_and_typed_in_again)
{
    for (std::size_t which = 0; which < std::size(openings); ++which) {
        const Opened& what = openings[which];
        SCOPED_TRACE(toUtf8(what.dialog));
        const int done = dies(which, static_cast<DWORD>(which) * 60, [&] {
            open(what, [](FormWindow& window) {
                EXPECT_THAT(shown(window.handle()), Not(StartsWith("Hay "))) << "Its program still runs.";
            });
        });
        ASSERT_GT(done, 0);
        open(what, [&](FormWindow& window) {
            EXPECT_THAT(shown(window.handle()), StartsWith("Hay textos sin guardar de hoy a las "));
            press(window, VK_MENU, 'R');
            EXPECT_THAT(shown(window.handle()), StartsWith("Escrito de nuevo: 1 dato"));
            const std::string typed = toUtf8(field(window, what).Text());
            const std::string letters = "abcdefghijklmnopqrstuvwxyzabcdefghijklmn";
            EXPECT_THAT(letters, StartsWith(typed));
            EXPECT_THAT(typed.size(), testing::AllOf(testing::Ge(done), testing::Le(done + 1)));
            press(window, VK_MENU, 'E');
            EXPECT_THAT(shown(window.handle()), Not(HasSubstr("Escrito")));
        });
        EXPECT_THAT(journal::journalFiles(journal::recordedFolder()), IsEmpty());
    }
}

TEST_F(Ventanas, a_section_has_its_keys_and_its_line_and_asks_before_it_is_left)
{
    const Opened& what = openings[2];
    open(what, [&](FormWindow& window) {
        const auto line = [&] { return shown(window.handle()); };
        EXPECT_THAT(line(), StartsWith("Alumno 1 de "));
        press(window, VK_MENU, VK_NEXT);
        EXPECT_THAT(line(), StartsWith("Alumno 2 de "));
        type(window, field(window, what), u'x');
        EXPECT_THAT(line(), HasSubstr("sin guardar: 1 alumno"));
        // Answered from the loop of the box, by the button that Enter presses: to stay.
        static int asked;
        asked = 0;
        SetTimer(window.handle(), answering, 50, [](HWND owner, UINT, UINT_PTR timer, DWORD) {
            const HWND box = GetLastActivePopup(owner);
            if (box == owner)
                return;
            KillTimer(owner, timer);
            ++asked;
            for (const UINT message : {WM_KEYDOWN, WM_KEYUP})
                PostMessageW(GetFocus(), message, VK_RETURN, 1);
        });
        send(window.handle(), WM_CLOSE);
        EXPECT_EQ(asked, 1);
        EXPECT_TRUE(window.form().Visible());
        const LONG before = window.pixels(1440);
        press(window, VK_CONTROL, VK_ADD);
        EXPECT_GT(window.pixels(1440), before);
        press(window, VK_CONTROL, VK_NUMPAD0);
        EXPECT_EQ(window.pixels(1440), before);
    });
}

} // namespace
