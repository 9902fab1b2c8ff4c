#include "Times.h"
#include "qt/Hand.h"

#include <fstream>
#include <iostream>
#include <random>
#include <sstream>

namespace zv::test {

/// What a person opens, and how to the dialog that is typed in.
struct Opened {
    const char* name;
    Byte node;
    Byte action;
    Long row;
    StringView dialog;
    Long kind = 0; ///< Of teaching, of a section's dialog.
};

const Opened openings[] = {
    {"eso", cNombreNodo::InfIndiv, 1, 0, u"frmInfIndESO", 3},
    {"primaria", cNombreNodo::InfIndiv, 1, 0, u"frmInfIndPrim", 2},
    {"consejo", cNombreNodo::NotaConsejoOrientador, 1, 0, u"frmConsejoOrientador", 3},
    {"emisor", cNombreNodo::Emisor, 2, 1, u"frmEmisor"},
    {"banco", cNombreNodo::OC_Bancos, 2, 1, u"frmBanco"},
    {"turno", cNombreNodo::Turnos, 1, 0, u"frmTurno"},
};

/// A person who types at random in real windows, in a process that is killed meanwhile.
struct Killed : Hands {
    /// One key, the same for the same numbers.
    static void press(FormWindow& window, std::mt19937& random)
    {
        QWidget* at = window.focusWidget();
        const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
        const unsigned kind = below(100);
        const bool button = qobject_cast<QPushButton*>(at) != nullptr;
        if (kind < 15 || button)
            QTest::keyClick(at, Qt::Key_Tab);
        else if (kind < 25)
            QTest::keyClick(at, Qt::Key_Down);
        else if (kind < 30)
            QTest::keyClick(at, Qt::Key_Space);
        else if (kind < 35)
            QTest::keyClick(at, below(2) == 0 ? Qt::Key_PageDown : Qt::Key_PageUp, Qt::AltModifier);
        else if (kind < 40)
            QTest::keyClick(at, Qt::Key_Tab, Qt::ControlModifier);
        else if (kind < 45)
            QTest::keyClick(at, Qt::Key_Backspace);
        else
            QTest::keyClicks(at, QString(QChar(static_cast<char16_t>(u'a' + below(26)))));
    }
    /// Opens the dialog; `does` acts in it.
    void open(const Opened& what, const std::function<void(FormWindow&)>& does)
    {
        hand.does = [&](FormWindow& window) {
            if (window.form().Name() == what.dialog)
                does(window);
            else
                chooseSection(window, what.kind);
        };
        openNode(school, what.node, what.action, what.row);
    }
    /// The lines that only one of the two has.
    static std::string differing(const std::string& typed, const std::string& recovered)
    {
        std::istringstream one(typed);
        std::istringstream other(recovered);
        std::string result;
        for (std::string line, its; std::getline(one, line) && std::getline(other, its);)
            if (line != its)
                result += "typed     " + line + "\nrecovered " + its + "\n";
        return result;
    }
    static constexpr int most = 400;
};

/// The process that is killed: tells of each act, once it is done, by a byte.
TEST_F(Killed, DISABLED_child)
{
    const std::string what = qgetenv("ZV_MUERE").toStdString();
    const std::size_t which = std::stoul(what);
    std::mt19937 random(static_cast<std::uint32_t>(std::stoul(what.substr(what.find(' ')))));
    hand.keepDrafts();
    open(openings[which], [&](FormWindow& window) {
        for (int acts = 0; acts < most; ++acts) {
            press(window, random);
            static_cast<void>(!write(STDOUT_FILENO, "\1", 1));
        }
        pause();
    });
}

TEST_F(Killed, what_was_typed_is_typed_in_again_but_for_the_act_in_flight)
{
    std::mt19937 chance(seedOr(20240912));
    const int kills = deaths(12, 12);
    for (int death = 0; death < kills; ++death) {
        const std::size_t which = static_cast<std::size_t>(death) % std::size(openings);
        const Opened& what = openings[which];
        const auto seed = static_cast<std::uint32_t>(chance());
        const int done = dies("Killed.DISABLED_child", std::to_string(which) + " " + std::to_string(seed),
                              std::chrono::milliseconds(chance() % 120));
        SCOPED_TRACE(std::string(what.name) + " " + std::to_string(seed) + ", " + std::to_string(done) +
                     " acts");
        std::vector<std::string> expected;
        open(what, [&](FormWindow& window) {
            std::mt19937 random(seed);
            for (int acts = 0; acts < done; ++acts)
                press(window, random);
            expected.push_back(state(window));
        });
        open(what, [&](FormWindow& window) {
            std::mt19937 random(seed);
            for (int acts = 0; acts < std::min(done + 1, most); ++acts)
                press(window, random);
            expected.push_back(state(window));
        });
        hand.keepDrafts();
        std::string recovered;
        open(what, [&](FormWindow& window) {
            QTest::keyClick(window.focusWidget(), Qt::Key_R, Qt::AltModifier);
            recovered = state(window);
        });
        journal::recording(false);
        EXPECT_TRUE(std::ranges::find(expected, recovered) != expected.end())
            << differing(expected.front(), recovered);
    }
    std::cout << kills << " killed\n";
}

} // namespace zv::test
