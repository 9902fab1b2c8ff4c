#include "estaciones/Stations.h"

#include "data/NumberOf.h"
#include "suite/Registrations.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <random>
#include <set>
#include <thread>

namespace zv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t stations = 8;
constexpr std::size_t rows = 3;

/// What all stations of a region write down, outside of any database.
struct Book {
    std::atomic<bool> over{false};
    std::atomic<int> twice{0};                         ///< Registrations granted to two at once.
    std::atomic<int> lost{0};                          ///< Acknowledged changes that were not there.
    std::atomic<int> granted{0}, failed{0};            ///< Registrations; statements that failed.
    std::array<std::atomic<int>, rows> holders{};      ///< How many hold a row.
    std::array<std::atomic<Long>, rows> counted{};     ///< The last value that was acknowledged.
    std::array<std::atomic<Long>, stations> longest{}; ///< Milliseconds without anything done.
    std::array<std::array<std::atomic<bool>, 100'000>, stations> saved{};
};

class Region : public Stations {
protected:
    ~Region() override { munmap(book, sizeof(Book)); }
    int live(std::size_t number) const;
    bool save(const School& school, const std::string& name) const;
    void count(const School& school, const Station& station, std::size_t row) const;
    bool to(const std::string& action) const
    {
        return std::system((ZV_SERVERS + GetParam() + " " + action).c_str()) == 0;
    }
    Book* const book =
        new (mmap(nullptr, sizeof(Book), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Book;
};

/// A new row through the dialog; whether its insert returned.
bool Region::save(const School& school, const std::string& name) const
{
    bool done = false;
    playedOn(school, "abrir 65 1 0\nescribir txtIdioma \"" + name + "\"\npulsar cmdIdioma(0)\n",
             [&](const std::string& what, StringView statement) {
                 done = done || (what == "hecho" && statement.starts_with(u"Insert into EstadoCivil"));
             });
    return done;
}

/// Adds one to a row that all want, while it is registered.
void Region::count(const School& school, const Station& station, std::size_t row) const
{
    const Long key = static_cast<Long>(row) + 1;
    const Integer user = static_cast<Integer>(station.identity.back());
    if (registerRow(*school.centro, station, u"frmPais", key, user))
        return;
    book->twice += book->holders[row]++ != 0;
    ++book->granted;
    const String where = u" Where IDPais=" + decimalText(key);
    try {
        const Long found =
            CLng(school.centro->Execute(u"Select Descripcion From Pais" + where)->Fields(u"Descripcion"));
        book->lost += found < book->counted[row];
        school.centro->Execute(u"Update Pais Set Descripcion='" + decimalText(found + 1) + u"'" + where);
        book->counted[row] = found + 1;
    } catch (const RuntimeError&) {
        ++book->failed;
    }
    --book->holders[row];
    for (bool freed = false; !freed;)
        freed = numberOf([&] { unregisterRow(*school.centro, station, u"frmPais", key); }) == 0 ||
                usleep(50'000) != 0;
}

int Region::live(std::size_t number) const
{
    const School school = openSchool(urlOf(static_cast<int>(number)));
    const Station station{u"puesto " + decimalText(static_cast<Long>(number)),
                          [](StringView) { return false; }};
    auto last = Clock::now();
    const auto noticePause = [&](bool over) {
        const auto pause = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - last);
        book->longest[number] = std::max<Long>(book->longest[number], static_cast<Long>(pause.count()));
        last = over ? Clock::now() : last;
    };
    for (std::size_t round = 0; !book->over && round < book->saved[number].size(); ++round) {
        const bool saved = save(school, "Puesto " + to_string(number) + "-" + to_string(round));
        book->saved[number][round] = saved;
        book->failed += !saved;
        try {
            count(school, station, (number + round) % rows);
        } catch (const RuntimeError&) {
            ++book->failed;
        }
        noticePause(saved);
        // A night of it must not draw more keys than a dialog's whole number has.
        usleep(400'000);
    }
    noticePause(true);
    return 0;
}

TEST_P(Region, loses_nothing_and_grants_nothing_twice_whichever_server_dies_while_stations_save)
{
    create();
    openSchool(url).centro->Execute(u"Update Pais Set Descripcion='0'");
    std::vector<Process> lives;
    for (std::size_t number = 0; number < stations; ++number)
        lives.push_back(start([&, number](int) { return live(number); }));
    const int kills = deaths(3, 3);
    std::mt19937 chance(seedOr(11));
    int done = 0;
    for (bool well = true; well && done < kills; done += well) {
        usleep(static_cast<useconds_t>(500'000 + chance() % 1'000'000));
        const std::string victim = std::string(std::getenv("ZV_REGION_CARPETA")) + " " +
                                   to_string(static_cast<std::size_t>(done) % servers.size());
        well = to("matar " + victim);
        usleep(static_cast<useconds_t>(chance() % 6'000'000));
        well = to("revivir " + victim) && well;
        EXPECT_TRUE(well) << victim;
    }
    sleep(2);
    book->over = true;
    for (const Process& each : lives)
        EXPECT_EQ(statusOf(each), 0);
    std::size_t saved = 0;
    for (std::size_t server = 0; server < servers.size(); ++server) {
        const School school = openSchool(urlOf(static_cast<int>(server)));
        std::multiset<String> there;
        const RecordsetPtr all = school.centro->Execute(u"Select Descripcion From EstadoCivil");
        for (; !all->Eof(); all->MoveNext())
            there.insert(CStr(all->Fields(u"Descripcion")));
        saved = 0;
        for (std::size_t station = 0; station < stations; ++station)
            for (std::size_t round = 0; round < book->saved[station].size(); ++round)
                if (book->saved[station][round]) {
                    ++saved;
                    book->lost += there.count(u"Puesto " + decimalText(static_cast<Long>(station)) + u"-" +
                                              decimalText(static_cast<Long>(round))) != 1;
                }
    }
    EXPECT_EQ(book->lost, 0);
    EXPECT_EQ(book->twice, 0);
    EXPECT_GT(saved, 0U);
    EXPECT_GT(book->granted, 0);
    const Long longest =
        *std::ranges::max_element(book->longest, {}, [](const auto& each) { return each.load(); });
    std::cout << done << " killed, " << saved << " rows and " << book->granted << " registrations, "
              << book->failed << " failed, longest pause " << static_cast<double>(longest) / 1000 << " s\n";
}

/// A standby by itself; a node that no longer sees the others; and one that does again.
TEST_P(Region, that_takes_no_changes_says_so_in_words)
{
    create();
    const std::string all = std::getenv("ZV_REGION_CARPETA");
    const auto refuses = [&](std::size_t server) {
        const String alone =
            url.substr(0, url.find(u";SERVIDORES")) + u";SERVIDORES=" + fromUtf8(servers[server]);
        return numberOf([&] { openSchool(alone); }, u"no admite cambios") == failure::connectionLost;
    };
    if (GetParam() == "reserva") {
        EXPECT_EQ(refuses(0) + refuses(1), 1);
        return;
    }
    EXPECT_FALSE(refuses(0));
    const School school = openSchool(url);
    for (const char* each : {" 1", " 2"})
        to("cortar " + all + each);
    const auto until = [](const auto& condition) {
        for (int trial = 0; trial < 60 && !condition(); ++trial)
            sleep(1);
        EXPECT_TRUE(condition());
    };
    until([&] { return refuses(0); });
    EXPECT_EQ(
        numberOf([&] { school.centro->Execute(u"Insert into Pais values (500,'x')"); }, u"no sirve ninguno"),
        failure::connectionLost);
    for (const char* each : {" 1", " 2"})
        to("seguir " + all + each);
    until([&] { return !refuses(0) && !refuses(1) && !refuses(2); });
    EXPECT_EQ(numberOf([&] { school.centro->Execute(u"Insert into Pais values (500,'x')"); }), 0);
}

/// An open session stays with no server that takes no changes any more, nor comes to a primary of old.
TEST_P(Region, that_became_read_only_is_left_and_a_primary_of_old_is_refused)
{
    using Steps = std::vector<std::tuple<std::string, int, StringView>>;
    create();
    const School school = openSchool(url);
    const Steps standby{{"leer", 0, u"no sirve ninguno"},
                        {"escribir", 0, u""},
                        {"matar", 0, u""},
                        {"volver", 0, u""},
                        {"leer", 1, u"era el principal antes"},
                        {"escribir", 1, u""},
                        {"revivir", 0, u""},
                        {"matar", 1, u""},
                        {"revivir", 1, u""}},
        nodes{{"leer", 0, u""},     {"leer", 1, u""},     {"leer", 2, u"no sirve ninguno"},
              {"escribir", 2, u""}, {"escribir", 1, u""}, {"escribir", 0, u""}};
    Long key = 500;
    for (const auto& [action, server, words] : GetParam() == "reserva" ? standby : nodes) {
        EXPECT_TRUE(to(action + " " + std::getenv("ZV_REGION_CARPETA") + " " + to_string(server)));
        sleep(1);
        const String row = u"Insert into Pais values (" + decimalText(++key) + u",'x')";
        EXPECT_EQ(numberOf([&] { school.centro->Execute(row); }, words) == 0, words.empty()) << action;
    }
}

/// Of a transaction nothing is there after a conflict; of two that draw the same key one gets it, and the
/// other is told so.
TEST_P(Region, tells_a_conflict_between_two_servers_from_a_taken_key)
{
    create();
    const School one = openSchool(urlOf(0));
    const School other = openSchool(urlOf(1));
    for (const School* each : {&one, &other}) {
        each->centro->executeNative(u"BEGIN");
        each->centro->Execute(u"Insert into Pais values (700,'x')");
        if (GetParam() == "reserva")
            each->centro->executeNative(u"ROLLBACK");
    }
    if (GetParam() == "galera") {
        one.centro->executeNative(u"COMMIT");
        EXPECT_EQ(numberOf([&] { other.centro->executeNative(u"COMMIT"); }), failure::locked);
    }
    std::atomic<int> got{0}, taken{0};
    const auto draw = [&](const School& school) {
        for (Long key = 1000; key < 1400; ++key) {
            const std::int32_t number = numberOf(
                [&] { school.centro->Execute(u"Insert into Pais values (" + decimalText(key) + u",'x')"); });
            got += number == 0;
            taken += number == failure::keyExists;
        }
    };
    std::thread second([&] { draw(other); });
    draw(one);
    second.join();
    EXPECT_EQ(got, 400);
    EXPECT_EQ(taken, 400);
    EXPECT_EQ(CLng(other.centro->Execute(u"Select Count(*) as n From Pais Where IDPais>=1000")->Fields(u"n")),
              400);
}

TEST_P(Region, behind_a_pooler_that_shares_sessions_from_now_on_gets_no_row_of_another_school)
{
    const std::string place = std::string(" ") + std::getenv("ZV_REGION_CARPETA");
    const String urls[] = {url, url + u"b"};
    std::atomic<bool> shares{false}, over{false};
    std::atomic<int> before{0}, late{0}, refused{0};
    const auto write = [&](int station) {
        const School school = openSchool(urls[station]);
        for (Long key = 1000; !over; ++key) {
            const bool shared = shares;
            const String row = decimalText(key) + u",'" + decimalText(Long{station}) + u"')";
            ++(numberOf([&] { school.centro->Execute(u"Insert into Pais values (" + row); }) != 0 ? refused
               : shared                                                                           ? late
                                                                                                  : before);
        }
    };
    for (const String& each : urls)
        createSchool(each);
    {
        const std::jthread one(write, 0), other(write, 1);
        sleep(1);
        EXPECT_EQ(std::system((ZV_SERVERS "repartidor transaccion" + place).c_str()), 0);
        shares = true;
        sleep(5);
        over = true;
    }
    EXPECT_EQ(std::system((ZV_SERVERS "repartidor sesion" + place).c_str()), 0);
    EXPECT_TRUE(before > 0 && refused > 0 && late == 0) << before << ' ' << refused << ' ' << late;
    for (const int station : {0, 1}) {
        const String foreign =
            u"Select * From Pais Where Descripcion='" + decimalText(Long{1 - station}) + u"'";
        EXPECT_TRUE(openSchool(urls[station]).centro->Execute(foreign)->Eof());
    }
    for (const Database which : everyDatabase)
        engineOf(urls[1]).remove(locationOf(urls[1]), which);
    std::cout << before << " rows, then " << refused << " refused, none written\n";
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Region);
INSTANTIATE_TEST_SUITE_P(, Region, testing::ValuesIn(regions()), [](const auto& each) { return each.param; });

} // namespace
} // namespace zv
