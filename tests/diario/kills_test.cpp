#include "diario/Dialogs.h"
#include "journal/Act.h"

#include "robot/Monkey.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <sstream>

namespace zv::journal {
namespace {

/// The commands of a guion that somebody is still writing: whole lines, without what was observed.
std::vector<std::string> commandsOf(const std::filesystem::path& file)
{
    std::vector<std::string> commands;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line) && !stream.eof();)
        if (!line.empty() && line[0] != '#' && line[0] != '>')
            commands.push_back(line);
    return commands;
}

bool startsWith(const std::string& text, const char* verb) { return text.rfind(verb, 0) == 0; }

std::vector<String> section(int node, StringView kind, StringView course)
{
    return {u"abrir " + decimalText(node) + u" 1 0", u"elegir cboTipoEnsenanza " + zv::quoted(kind),
            u"elegir cboCursos " + zv::quoted(course), u"elegir cboSecciones 0", u"pulsar cmdNotaManual1(0)"};
}

/// What a host and a person do to have that dialog open, for a new row and for an old one.
std::vector<String> opening(const String& dialog, bool creates)
{
    if (dialog == u"frmConsejoOrientador")
        return section(122, u"Educación Secundaria Obligatoria", u"2º de ESO");
    if (dialog == u"frmInfIndESO")
        return section(130, u"Educación Secundaria Obligatoria", u"1º de ESO");
    if (dialog == u"frmInfIndPrim")
        return section(130, u"Educación Primaria", u"2º de Primaria");
    if (dialog == u"frmSucursal")
        return {u"abrir 30 2 1", u"pestana mstBanco 2", u"celda msgBanco 1 0",
                creates ? u"pulsar cmdBotonera(2)" : u"pulsar cmdBotonera(3)"};
    return {u"mostrar " + dialog + (creates ? u" 1 0" : u" 2 1")};
}

class Kills : public Recorded {
protected:
    /// A monkey in a process of its own that dies while it acts; what it began, in order.
    std::vector<std::string> killedMonkey(const RandomActs& wishes, int microseconds)
    {
        const auto file = folder / "azar.guion";
        const pid_t monkey = fork();
        if (monkey == 0) {
            std::ofstream out(file);
            actAtRandom(wishes, out);
            _exit(0);
        }
        while (commandsOf(file).empty())
            usleep(1000);
        // In the middle of typing, wherever that is: in a dialog that has a journal.
        usleep(static_cast<useconds_t>(microseconds));
        // The file of a dialog that closed is empty and waits for the next.
        const auto isTyping = [&] {
            return std::ranges::any_of(journalFiles(folder), [](const std::filesystem::path& each) {
                std::error_code gone;
                return std::filesystem::file_size(each, gone) > 0 && !gone;
            });
        };
        int status = 0;
        bool isDone = false;
        while (!isTyping() && !(isDone = waitpid(monkey, &status, WNOHANG) != 0))
            usleep(100);
        if (!isDone) {
            usleep(static_cast<useconds_t>(microseconds % 3000));
            kill(monkey, SIGKILL);
            waitpid(monkey, &status, 0);
        }
        // Where nothing is typed it may have been done before.
        EXPECT_TRUE(status == SIGKILL || status == 0) << status;
        killed += status == SIGKILL ? 1 : 0;
        return commandsOf(file);
    }

    /// The command that opened a dialog, and those that chose in it where nothing else is done.
    using Opened = std::vector<std::string>;

    /// Whether the dead monkey's dialogs are again as they were behind that many of its acts.
    bool isAgain(const std::vector<std::string>& commands, std::size_t count)
    {
        const FreshSchool fresh(u"sqlite:", true);
        Seen before;
        Opened session;
        std::vector<Opened> openers;
        bool chose = false;
        std::size_t done = 0;
        recording(false);
        playOn(fresh.school(), [&](Play& play) {
            const std::size_t depth = openDialogs().size();
            const bool sets = done > 0 && (startsWith(commands[done - 1], "sesion") ||
                                           startsWith(commands[done - 1], "region"));
            if (sets)
                session.push_back(commands[done - 1]);
            else if (depth > openers.size())
                openers.push_back({commands[done - 1]});
            else if (depth == openers.size() && chose)
                openers.back().push_back(commands[done - 1]);
            openers.resize(depth);
            const Form* top = play.openForm();
            chose = top != nullptr && onlyChooses(top->Name());
            if (done == count)
                before = allSeen(play);
            return done < count ? commands[done++] : "";
        });
        recording(true);
        if (openers.empty() || draftsLeft() == 0)
            return draftsLeft() == 0;
        for (const Opened& each : openers)
            session.insert(session.end(), each.begin(), each.end());
        const auto dead = journalFiles(folder);
        const Seen now = recover(fresh.school(), session, openers.size());
        for (const auto& file : journalFiles(folder))
            if (std::ranges::find(dead, file) == dead.end())
                discard(file);
        for (const String& form : untouched)
            std::erase_if(before,
                          [&](const auto& each) { return each.first.starts_with(toUtf8(form) + "."); });
        const std::string differs = difference(before, now);
        said += differs;
        return differs.empty();
    }
    /// Opens the same dialogs again, and in each types its drafts.
    Seen recover(const School& school, const Opened& commands, std::size_t depth)
    {
        Seen now;
        std::size_t done = 0;
        untouched.clear();
        playOn(school, [&](Play& play) -> std::string {
            if (Form* form = play.openForm(); form != nullptr && now.empty()) {
                const Opening* opening = recorder().opening(*form);
                const std::vector<Found> found =
                    opening != nullptr ? draftsFor(*opening, folder) : std::vector<Found>();
                for (const Found& each : found) {
                    recovered.insert(form->Name());
                    left += Recovery::left(Recovery(*form, play.person(), each.draft).run()).size();
                }
                // Which pupil was shown, where nothing was typed, comes back no more than an empty dialog
                // does.
                if (found.empty() && SectionControls(*form).isSection())
                    untouched.insert(form->Name());
                if (openDialogs().size() == depth && now.empty())
                    now = allSeen(play);
            }
            return now.empty() && done < commands.size() ? commands[done++] : "";
        });
        return now;
    }
    std::size_t draftsLeft() const { return drafts(folder).size(); }

    static std::string difference(const Seen& a, const Seen& b)
    {
        std::ostringstream text;
        for (const auto& [name, value] : a)
            if (const auto found = b.find(name); found == b.end() || found->second != value)
                text << name << "\n  was   " << value << "\n  is    "
                     << (found == b.end() ? "(not open)" : found->second) << "\n";
        return text.str();
    }

    std::set<String> untouched;
    int killed = 0;
    std::size_t left = 0;
    std::string said;
    std::set<String> recovered;
};

TEST_F(Kills, what_was_typed_is_there_again)
{
    std::mt19937 chance(seedOr(1));
    const int kills = deaths(brief(12, 4), 12);
    const char* only = std::getenv("ZV_VENTANA");
    const std::vector<String> names =
        only != nullptr ? std::vector<String>{fromUtf8(only)} : dialogs().names();
    int withDraft = 0;
    for (int each = 0; each < kills; ++each) {
        forget();
        said.clear();
        const auto seed = static_cast<std::uint32_t>(chance() % 1000000 + 1);
        RandomActs wishes{.seed = seed, .acts = 100000};
        // Three in a dialog in which he stays, each dialog in its turn, and one wherever he likes.
        if (each % 4 != 3)
            wishes.first = opening(names[static_cast<std::size_t>(each / 4 * 3 + each % 4) % names.size()],
                                   chance() % 2 == 0);
        const std::vector<std::string> commands = killedMonkey(wishes, static_cast<int>(chance() % 60000));
        if (draftsLeft() == 0)
            continue;
        ++withDraft;
        EXPECT_TRUE(isAgain(commands, commands.size()) || isAgain(commands, commands.size() - 1))
            << "seed " << seed << ", " << commands.size() << " acts, first " << commands[0]
            << ", the last: " << commands.back() << "\n"
            << said;
    }
    EXPECT_GE(withDraft * 3, kills) << "he hardly ever dies while there is something to lose";
    for (const String& name : names)
        if (!recovered.contains(name)) {
            std::cout << "not in " << toUtf8(name) << "\n";
            // A branch's acts are in its bank's draft.
            EXPECT_TRUE(kills < 500 || onlyChooses(name) || name == u"frmSucursal") << toUtf8(name);
        }
    std::cout << killed << " killed, " << withDraft << " with a draft, in " << recovered.size()
              << " dialogs; without a place: " << left << "\n";
    EXPECT_GT(killed, 0);
}

} // namespace
} // namespace zv::journal
