#include "data/history/Cuts.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Words.h"
#include "estaciones/Stations.h"
#include "history/Tables.h"

#include <csignal>
#include <ctime>
#include <random>

namespace zv {
namespace {

std::string section(const char* node, const char* kind, const char* course, const char* name)
{
    return std::string("abrir ") + node + " 1 0\nelegir cboTipoEnsenanza \"" + kind +
           "\"\nelegir cboCursos \"" + course + "\"\nelegir cboSecciones \"" + name +
           "\"\npulsar cmdNotaManual1(0)\n";
}

constexpr const char* eso = "Educación Secundaria Obligatoria";

/// One act for each of the section's first pupils.
std::string pupils(int count, const std::string& act)
{
    std::string text;
    for (int pupil = 0; pupil < count; ++pupil)
        text += act + "pulsar cmdSiguiente\n";
    return text;
}

std::string branches(int count)
{
    std::string text = "pestana mstBanco 2\n";
    for (int branch = 0; branch < count; ++branch)
        text += "pulsar cmdBotonera(2)\nescribir txtSucursal(0) \"Nueva\"\nescribir txtSucursal(2) \"77" +
                to_string(10 + branch) + "\"\npulsar cmdSucursal(0)\n";
    return text;
}

/// The kinds of saves: what a person does, whether a save is one statement, what is told of one that was cut.
struct Save {
    const char* name;
    std::string guion;
    bool single;
    const char* told;
};

const std::vector<Save>& saves()
{
    static const std::vector<Save> all = {
        {"catálogo", "abrir 65 2 1\nescribir txtIdioma \"Otro\"\npulsar cmdIdioma(0)\n", true, ""},
        {"banco", "abrir 30 2 1\nescribir txtBanco(1) \"Otro\"\n" + branches(12) + "pulsar cmdBotonera(0)\n",
         false, "El guardado del banco "},
        {"banco nuevo",
         "abrir 30 1 0\nescribir txtBanco(0) \"9991\"\nescribir txtBanco(1) \"Nuevo\"\n" + branches(12) +
             "pulsar cmdBotonera(0)\n",
         false, "El guardado del banco 9991 de "},
        {"presentador y emisor",
         "abrir 36 2 1\nescribir txtNombre \"Otro\"\npulsar cmdAceptar\n"
         "abrir 31 2 1\nescribir txtNombre \"Otro\"\npulsar cmdAceptar\n",
         true, ""},
        {"consejo",
         section("122", eso, "2º de ESO", "2º A") +
             pupils(20, "elegir cboRespuesta(0) 3\nelegir cboRespuesta(1) 2\nelegir cboRespuesta(2) 1\n") +
             "pulsar cmdNotaManual1(0)\ncerrar\n",
         false, "El guardado del consejo orientador de 2º A de 2º de ESO de "},
        {"informe de secundaria",
         section("130", eso, "1º de ESO", "1º A") +
             pupils(26, "escribir txtCognitiva \"Otra\"\npestana TabInfInd 4\nescribir txtDificultad "
                        "\"Ninguna\"\n") +
             "pulsar cmdNotaManual1(0)\ncerrar\n",
         false, "El guardado de los informes de 1º A de 1º de ESO de "},
        {"informe de primaria",
         section("130", "Educación Primaria", "2º de Primaria", "2º A") +
             pupils(10, "pestana TabInfInd 6\nescribir txtDificultad \"Ninguna\"\n") +
             "pulsar cmdNotaManual1(0)\ncerrar\n",
         false, "El guardado de los informes de 2º A de 2º de Primaria de "},
    };
    return all;
}

/// Has the system kill this process, whatever it does then.
void dieIn(int microseconds)
{
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer{};
    ASSERT_EQ(timer_create(CLOCK_MONOTONIC, &event, &timer), 0);
    itimerspec moment{};
    moment.it_value.tv_sec = microseconds / 1'000'000;
    moment.it_value.tv_nsec = 1 + 1000L * (microseconds % 1'000'000);
    ASSERT_EQ(timer_settime(timer, 0, &moment, nullptr), 0);
}

class Killed : public Stations {
protected:
    Killed()
    {
        createWithHistory();
        const School school = openSchool(url);
        model.emplace(*school.centro, engineOf(url), Tables::Which::written);
        first.emplace(*school.centro, engineOf(url));
    }
    ~Killed() override { EXPECT_SAME_TABLES(*first, Tables(*openSchool(url).centro, engineOf(url))); }

    /// A station that makes the save, and something else before its nth statement that writes a row; of each
    /// it tells when it begins (".") and when it has returned ("!").
    Process station(const Save& save, int nth = -1, const std::function<void()>& then = {})
    {
        return start([&](int out) {
            int sent = 0;
            playedOn(history::withHistory(openSchool(url), url), save.guion,
                     [&](const std::string& what, StringView statement) {
                         const bool begins = what == "va";
                         if (lowerName(statement).starts_with(u"select") ||
                             statement.find(u"RegistroActivo") != StringView::npos)
                             return;
                         if (begins && sent++ == nth)
                             then();
                         static_cast<void>(!write(out, begins ? "." : "!", 1));
                     });
            return 0;
        });
    }
    /// How many statements returned until it ended.
    static int returned(const Process& station)
    {
        int result = 0;
        for (int c = 0; (c = fgetc(station.second)) != EOF;)
            result += c == '!' ? 1 : 0;
        return result;
    }
    /// A server may be about to end what the dead station had begun: all that writes holds the head.
    static void settle(Connection& centro)
    {
        centro.executeNative(u"UPDATE HistorialCabeza SET Numero=Numero");
    }
    /// The tables, which are to be what the history says that was done to them.
    Tables look(Connection& centro)
    {
        const Tables now(centro, engineOf(url), Tables::Which::written);
        history::forEach(centro, u"Numero>" + decimalText(replayed), [&](const history::Entry& entry) {
            EXPECT_TRUE(model->replay(entry)) << entry.number;
            replayed = entry.number;
            return true;
        });
        EXPECT_SAME_TABLES(*model, now);
        return now;
    }
    struct Kind {
        int statements = 0;
        double microseconds = 0; ///< Of one, about.
        std::optional<Tables> after;
    };
    Kind whole(const Save& save);
    void takeBack(const Save& save, const Tables& before, const Kind& kind, bool allReturned);

    Long replayed = 0;
    std::optional<Tables> model;
    std::optional<Tables> first;
    int between = 0, within = 0, seemingly = 0, idle = 0, past = 0;
};

/// Makes the save undisturbed, and undoes it.
Killed::Kind Killed::whole(const Save& save)
{
    Kind result;
    const auto begun = std::chrono::steady_clock::now();
    const Process process = station(save);
    result.statements = returned(process);
    EXPECT_EQ(statusOf(process), 0);
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begun;
    result.microseconds = took.count() / result.statements;
    const School school = history::withHistory(openSchool(url), url);
    const Long head = replayed;
    const Tables before = *model;
    result.after = look(*school.centro);
    EXPECT_TRUE(history::cuts(*school.centro, [](auto&&...) { return true; }).empty()) << save.name;
    history::undo(*history::historyOf(school.centro), {.since = head + 1}, {});
    EXPECT_SAME_TABLES(before, look(*school.centro));
    return result;
}

void Killed::takeBack(const Save& save, const Tables& before, const Kind& kind, bool allReturned)
{
    const School school = history::withHistory(openSchool(url), url);
    history::HistoryConnection& centro = *history::historyOf(school.centro);
    settle(centro);
    const Long head = replayed;
    const Tables now = look(centro);
    const auto everyone = [](auto&&...) { return true; };
    const std::vector<history::Cut> cuts = history::cuts(centro, everyone);
    const bool cut = !save.single && now != before && now != *kind.after;
    if (cut)
        ASSERT_EQ(cuts.size(), 1U) << save.name;
    else
        ASSERT_LE(cuts.size(), !save.single && now == *kind.after ? 1U : 0U) << save.name;
    between += cut ? 1 : 0;
    past += now == *kind.after ? 1 : 0;
    if (!cuts.empty()) {
        seemingly += allReturned ? 1 : 0;
        idle += cut || allReturned ? 0 : 1;
        EXPECT_THAT(toUtf8(told(cuts.front(), timeHere())), testing::StartsWith(save.told));
        EXPECT_TRUE(history::takeBack(centro, cuts.front(), {}).obstacles.empty());
    } else {
        history::undo(centro, {.since = head + 1}, {});
    }
    EXPECT_SAME_TABLES(before, look(centro));
    EXPECT_TRUE(history::cuts(centro, everyone).empty()) << save.name;
}

TEST_P(Killed, a_cut_save_is_found_and_taken_back_and_no_other)
{
    std::mt19937 chance(seedOr(11));
    const Tables before = *model;
    std::vector<Kind> kinds;
    for (const Save& each : saves())
        kinds.push_back(whole(each));
    const int kills = deaths(brief(28, 14), 1000);
    int killed = 0;
    for (int kill = 0; kill < kills && !HasFatalFailure(); ++kill) {
        const std::size_t which = static_cast<std::size_t>(kill) % saves().size();
        const Kind& kind = kinds[which];
        const int nth = static_cast<int>(chance() % static_cast<unsigned>(kind.statements));
        const int later = static_cast<int>(chance() % static_cast<unsigned>(1 + 2 * kind.microseconds));
        const Process process = station(saves()[which], nth, [&] { dieIn(later); });
        const bool all = returned(process) == kind.statements;
        killed += wasKilled(statusOf(process)) ? 1 : 0;
        takeBack(saves()[which], before, kind, all);
    }
    std::cout << killed << " killed: " << between << " saves cut, " << past << " whole, of which "
              << seemingly << " killed before the note of their end and " << idle
              << " before statements that would have changed nothing\n";
    EXPECT_GT(between, kills / 4);
    EXPECT_GE(killed, between);
}

TEST_P(Killed, the_command_line_tells_of_dead_stations_only_and_takes_back)
{
    const Tables before = *model;
    for (const Save& save : saves()) {
        if (save.single)
            continue;
        const Process process = station(save, 5, [] { raise(SIGSTOP); });
        int status = 0;
        waitpid(process.first, &status, WUNTRACED);
        ASSERT_TRUE(WIFSTOPPED(status));
        EXPECT_EQ(historial("cortados"), 0) << said;
        EXPECT_EQ(said, "No hay ningún guardado cortado.\n");
        ::kill(process.first, SIGKILL);
        statusOf(process);
        settle(*openSchool(url).centro);
        EXPECT_EQ(historial("cortados"), 1);
        EXPECT_THAT(said, testing::StartsWith(save.told));
        EXPECT_EQ(historial("cortados --deshacer"), 1);
        EXPECT_EQ(historial("cortados --deshacer --si"), 0) << said;
        EXPECT_EQ(historial("cortados"), 0) << said;
        EXPECT_SAME_TABLES(before, look(*openSchool(url).centro));
    }
}

INSTANTIATE_TEST_SUITE_P(each, Killed, testing::Values("sqlite", "postgres", "mariadb"),
                         [](const auto& each) { return each.param; });

} // namespace
} // namespace zv
