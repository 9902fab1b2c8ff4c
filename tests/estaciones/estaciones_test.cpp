#include "estaciones/Stations.h"

#include "data/NumberOf.h"
#include "data/ServerAway.h"
#include "servidor/OwnServer.h"
#include "suite/Registrations.h"

#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <random>
#include <set>

namespace zv {
namespace {

/// With obstacles: what lasts from the first update and the first insert until the dialog is left.
class Hindered : public Stations {
protected:
    void meet(const std::function<void()>& begin, const std::function<void()>& end);
};

TEST_P(Stations, eight_insert_into_the_same_catalogues_through_the_dialogs)
{
    create();
    const int rows = times(12, 125);
    std::string command = "cd " + folder.string();
    for (const char station : std::string("abcdefgh")) {
        std::ofstream guion(folder / (station + std::string(".guion")));
        for (int row = 0; row < rows; ++row)
            for (const auto& [node, form] : {std::pair("65", "Idioma"), std::pair("34", "Pais")})
                guion << "abrir " << node << " 1 0\nescribir txt" << form << " \"Puesto " << station << row
                      << "\"\npulsar cmd" << form << "(0)\n";
        command += "\ntimeout 600 " ZVCONF " guion --en '" + toUtf8(urlOf(station)) + "' " + station +
                   ".guion 2>&1 &";
    }
    shell(command + "\nwait");
    for (const char* bad : {"> bip", "> mensaje", "> error", "> inaccesible", ".guion:"})
        EXPECT_THAT(said, testing::Not(testing::HasSubstr(bad)));
    for (const StringView table : {u"EstadoCivil", u"Pais"}) {
        const String from = u" FROM " + String(table);
        EXPECT_EQ(one(u"SELECT COUNT(DISTINCT Descripcion)" + from + u" WHERE Descripcion LIKE 'Puesto %'"),
                  8 * rows);
        EXPECT_EQ(one(u"SELECT COUNT(*)-COUNT(DISTINCT ID" + String(table) + u")" + from), 0);
    }
}

TEST_P(Stations, two_never_get_the_same_row)
{
    create();
    struct Shared {
        std::atomic<int> inside{0}, twice{0}, granted{0};
    };
    void* room = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto* shared = new (room) Shared;
    const int rounds = times(200, 10000);
    const auto contender = [&](Integer user) {
        const School school = openSchool(urlOf(user));
        const Station station{u"puesto " + decimalText(user), [](StringView) { return false; }};
        for (int round = 0; round < rounds; ++round) {
            const Long row = round % 3;
            if (registerRow(*school.centro, station, u"frmPais", row, user))
                continue;
            shared->twice += shared->inside.fetch_or(1 << row) >> row & 1;
            ++shared->granted;
            shared->inside &= ~(1 << row);
            unregisterRow(*school.centro, station, u"frmPais", row);
        }
        return 0;
    };
    const Process first = start([&](int) { return contender(1); });
    EXPECT_EQ(statusOf(start([&](int) { return contender(2); })), 0);
    EXPECT_EQ(statusOf(first), 0);
    EXPECT_EQ(shared->twice, 0);
    EXPECT_GT(shared->granted, rounds / 2);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM RegistroActivo"), 0);
    munmap(room, sizeof(Shared));
}

/// Saves of a bank with a new branch, and now and then of a section's guidance.
std::string saves(int first)
{
    std::string text;
    for (int i = first; i < first + 8; ++i) {
        const std::string n = to_string(i);
        text += "abrir 30 2 1\nescribir txtBanco(1) \"Banco " + n +
                "\"\npestana mstBanco 2\npulsar cmdBotonera(2)\n" + "escribir txtSucursal(0) \"Sucursal " +
                n + "\"\nescribir txtSucursal(2) \"" + n +
                "\"\npulsar cmdSucursal(0)\npulsar cmdBotonera(0)\n";
        if (i % 4 == 3)
            text +=
                "abrir 122 1 0\nelegir cboCursos 0\nelegir cboSecciones 0\npulsar cmdNotaManual1(0)\nelegir "
                "cboRespuesta(0) " +
                to_string(i / 4 % 3) + "\npulsar cmdNotaManual1(0)\ncerrar\n";
    }
    return text;
}

/// What the saves write, row by row.
std::vector<String> written(Connection& centro)
{
    std::vector<String> lines;
    for (const StringView table : {u"Banco", u"Sucursal", u"ConsejoOrientador_Nota"}) {
        const RecordsetPtr rows = centro.Execute(u"Select * From " + String(table) + u" Order By 1");
        for (; !rows->Eof(); rows->MoveNext()) {
            lines.emplace_back(table);
            for (const Value& value : rows->row())
                lines.back() += u"|" + (String() + value);
        }
    }
    return lines;
}

TEST_P(Stations, one_killed_while_it_saves_leaves_what_had_returned_and_no_more)
{
    create();
    School shadow = temporarySchool(u"sqlite:");
    fillSampleSchool(shadow);
    std::mt19937 chance(seedOr(7));
    int held = 0, within = 0;
    const int kills = deaths(10, 100);
    for (int kill = 0; kill < kills; ++kill) {
        const Process station = start([&](int out) {
            played(saves(1000 + 8 * kill), [&](const std::string& what, StringView statement) {
                const std::string line = what + " " + toUtf8(statement) + "\n";
                static_cast<void>(!write(out, line.data(), line.size()));
            });
            return 0;
        });
        String pending;
        std::array<char, 4096> line{};
        const auto wanted = chance() % 150;
        for (unsigned lines = 0; fgets(line.data(), line.size(), station.second); ++lines) {
            const String text = fromUtf8(line.data());
            const String statement = text.substr(text.find(u' ') + 1);
            if (lowerName(statement).find(u"select ") != 0 &&
                statement.find(u"RegistroActivo") == String::npos) {
                pending = text[0] == u'v' ? statement : String();
                if (pending.empty())
                    shadow.centro->Execute(statement);
            }
            if (lines == wanted) {
                usleep(static_cast<useconds_t>(chance() % 3000));
                ::kill(station.first, SIGKILL);
            }
        }
        EXPECT_EQ(statusOf(station), SIGKILL) << "it was to be killed while it saved";
        within += !pending.empty();
        held += one(u"SELECT COUNT(*) FROM RegistroActivo");
        // A server may be about to end what the dead station had begun.
        usleep(GetParam() == "sqlite" ? 0 : 100'000);
        const auto left = written(*openSchool(url).centro);
        if (left != written(*shadow.centro) && !pending.empty())
            shadow.centro->Execute(pending);
        ASSERT_EQ(left, written(*shadow.centro)) << toUtf8(pending);
        EXPECT_EQ(statusOf(start([&](int) {
                      const School school = openSchool(url);
                      const bool refused = registerRow(*school.centro, thisStation(), u"frmBanco", 1, 99);
                      unregisterRow(*school.centro, thisStation(), u"frmBanco", 1);
                      return int{refused};
                  })),
                  0)
            << "the next station gets the row at once";
    }
    EXPECT_GT(held, 0);
    std::cout << kills << " killed, " << held << " with the row open, " << within << " within a statement\n";
}

TEST_P(Stations, one_killed_while_it_makes_a_school_leaves_none_and_the_next_clears_up)
{
    const auto die = [](School&) { ::kill(getpid(), SIGKILL); };
    const auto opens = [&] { return numberOf([&] { openSchool(url); }) == 0; };
    EXPECT_EQ(statusOf(start([&](int) { return createSchool(url, die), 0; })), SIGKILL);
    EXPECT_FALSE(opens());
    std::string made = "sqlite";
    if (GetParam() != "sqlite") {
        const Process player = start([&](int out) {
            School school = temporarySchool(url);
            const std::string name =
                toUtf8(CStr(school.centro
                                ->executeNative(isMaria() ? u"SELECT DATABASE()" : u"SELECT current_schema()")
                                ->row()
                                .front())) +
                "\n";
            static_cast<void>(!write(out, name.data(), name.size()));
            die(school);
            return 0;
        });
        std::array<char, 200> line{};
        ASSERT_NE(fgets(line.data(), line.size(), player.second), nullptr);
        made = std::string(line.data(), std::strlen(line.data()) - 1);
        EXPECT_EQ(statusOf(player), SIGKILL);
        usleep(300'000); // Until the server has noticed.
    }
    create();
    EXPECT_TRUE(opens());
    if (GetParam() == "sqlite")
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 3);
    else
        EXPECT_EQ(one(u"SELECT COUNT(*) FROM information_schema.schemata WHERE schema_name='" +
                      fromUtf8(made) + u"'"),
                  0);
}

constexpr const char* refused = R"(abrir 65 2 1
> muestra frmEstadoCivil "Propiedades del Estado Civil Soltero/a"
escribir txtIdioma "Otro"
pulsar cmdIdioma(0)
> bip
> mensaje 16 "ZORVEL GESTIÓN ESCOLAR" "ERROR al actualizar la base de datos"
pulsar cmdIdioma(1)
> cierra frmEstadoCivil
abrir 65 1 0
> muestra frmEstadoCivil "Nuevo Estado Civil"
escribir txtIdioma "Perdido"
pulsar cmdIdioma(0)
> mensaje 16 "ZORVEL GESTIÓN ESCOLAR" "ERROR al insertar un registro en la base de datos"
> cierra frmEstadoCivil
abrir 65 1 0
> muestra frmEstadoCivil "Nuevo Estado Civil"
escribir txtIdioma "Nuevo"
pulsar cmdIdioma(0)
> cierra frmEstadoCivil
)";

/// An obstacle begins at the first update and at the first insert, and lasts until the dialog is left.
void Hindered::meet(const std::function<void()>& begin, const std::function<void()>& end)
{
    create();
    std::set<StringView> met;
    bool there = false;
    const auto look = [&](const std::string& what, StringView statement) {
        for (const StringView act : {u"Update EstadoCivil", u"Insert into EstadoCivil"})
            if (what == "va" && statement.starts_with(act) && met.insert(act).second)
                begin(), there = true;
        if (there && statement.starts_with(u"SELECT MAX"))
            end(), there = false;
    };
    EXPECT_EQ(played(refused, look), refused);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion='Nuevo'"), 1);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion IN ('Otro','Perdido')"), 0);
}

TEST_P(Hindered, a_table_that_another_holds_past_the_wait_costs_a_message)
{
    School other;
    const auto begin = [&] {
        other = openSchool(url);
        other.centro->executeNative(GetParam() == "sqlite" ? u"BEGIN IMMEDIATE" : u"BEGIN");
        if (GetParam() != "sqlite")
            other.centro->executeNative(isMaria()
                                            ? u"LOCK TABLES EstadoCivil READ, RegistroActivo READ"
                                            : u"LOCK TABLE EstadoCivil, RegistroActivo IN EXCLUSIVE MODE");
    };
    meet(begin, [&] { other = {}; });
}

class FullDisk : public Hindered {};

TEST_P(FullDisk, costs_a_message)
{
    const bool mounted = mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=16m") == 0;
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    const auto begin = [&] {
        // Where no small disk can be had, no file may grow.
        const rlimit now{std::filesystem::file_size(folder / "colegio.db-wal"), before.rlim_max};
        if (!mounted)
            setrlimit(RLIMIT_FSIZE, &now);
        for (std::ofstream file(folder / "relleno");
             mounted && file << std::string(4096, 'x') << std::flush;) {
        }
    };
    meet(begin, [&] {
        setrlimit(RLIMIT_FSIZE, &before);
        std::filesystem::remove(folder / "relleno");
    });
    umount2(folder.c_str(), MNT_DETACH);
}

/// A server of its own, since it is cut off.
class LostServer : public Hindered {
protected:
    LostServer() { url = u"odbc:" + own.location(); }
    ~LostServer() override
    {
        onServerAway(nullptr);
        url = u"sqlite:" + (folder / "nada.db").u16string();
    }
    OwnServer own{folder, GetParam()};
    WaitForServer wait;
};

TEST_P(LostServer, costs_a_message_and_is_found_again)
{
    int asked = 0;
    for (const bool somebody : {false, true}) {
        wait = [&](const ServerAway& away) { return (asked += !away.givenUp) < 0; };
        onServerAway(somebody ? &wait : nullptr);
        meet([this] { own.to("cortar"); }, [this] { own.to("seguir"); });
        own.to("parar");
        own.to("arrancar");
        url = u"odbc:" + own.location();
    }
    EXPECT_EQ(asked, 2) << "one for each outage, and who goes on without it sees what he saw before";
}

TEST_P(LostServer, that_says_nothing_is_waited_for_once_and_not_by_each_statement)
{
    create();
    const School school = openSchool(url);
    const auto number = [&] { return numberOf([&] { school.centro->Execute(u"Select * from Pais"); }); };
    endLinks(*school.borrado);
    const pid_t process = own.process();
    ::kill(process, SIGSTOP);
    const auto begun = std::chrono::steady_clock::now();
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(number(), failure::connectionLost);
    // One by one they would take minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(60));
    ::kill(process, SIGCONT);
    sleep(3);
    EXPECT_EQ(number(), 0);
}

TEST_P(LostServer, that_ends_an_idle_link_or_is_waited_for_between_two_answers_of_a_guidance_loses_none)
{
    create();
    wait = [this](const ServerAway& away) {
        own.to("seguir");
        while (away.tryAgain())
            usleep(50'000);
        return true;
    };
    onServerAway(&wait);
    const std::string save = "abrir 122 1 0\nelegir cboCursos 0\nelegir cboSecciones 0\npulsar "
                             "cmdNotaManual1(0)\nelegir cboRespuesta(0) 2\nelegir cboRespuesta(1) 1\npulsar "
                             "cmdNotaManual1(0)\ncerrar\n";
    const School other = openSchool(url);
    School undisturbed = temporarySchool(u"sqlite:");
    fillSampleSchool(undisturbed);
    for (const School* each : {&other, &std::as_const(undisturbed)})
        each->centro->Execute(u"Update ConsejoOrientador_Nota Set codCOResp=0");
    int ended = 0;
    const std::string seen = played(save, [&](const std::string& what, StringView statement) {
        if (what != "va" || statement.starts_with(u"S") || ++ended > 6)
            return;
        if (ended > 4)
            return own.to("cortar");
        endLinks(*other.centro);
    });
    const Guion guion = readGuion(save);
    Play play(guion, undisturbed, scriptedStage);
    play.run();
    EXPECT_EQ(seen, toUtf8(play.transcript().text()));
    EXPECT_EQ(written(*openSchool(url).centro), written(*undisturbed.centro));
    EXPECT_GT(ended, 6);
}

INSTANTIATE_TEST_SUITE_P(each, LostServer, testing::Values("postgres", "mariadb"));
INSTANTIATE_TEST_SUITE_P(each, Stations, testing::Values("sqlite", "postgres", "mariadb"),
                         [](const auto& each) { return each.param; });
INSTANTIATE_TEST_SUITE_P(region, Stations, testing::ValuesIn(regions()),
                         [](const auto& each) { return each.param; });
INSTANTIATE_TEST_SUITE_P(each, Hindered, testing::Values("sqlite", "postgres", "mariadb"),
                         [](const auto& each) { return each.param; });
INSTANTIATE_TEST_SUITE_P(each, FullDisk, testing::Values("sqlite"));

} // namespace
} // namespace zv
