#include "data/Schools.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sample/SampleSchool.h"
#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "robot/ScriptedStage.h"
#include "suite/Registrations.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>

namespace zv {
namespace {

/// With ZV_LARGO in the environment, as often as a night allows; else as often as a minute does.
int times(int brief, int night) { return std::getenv("ZV_LARGO") ? night : brief; }

std::string number(int value, int width = 0)
{
    const std::string digits = std::to_string(value);
    return std::string(static_cast<std::size_t>(std::max(0, width - static_cast<int>(digits.size()))), '0') +
           digits;
}

/// A connection whose statements are seen before ("va") and after they ran ("hecho", "fallo").
class Watched final : public Connection {
public:
    using Look = std::function<void(StringView statement, const char* what)>;
    Watched(ConnectionPtr inner, Look look) : inner_(std::move(inner)), look_(std::move(look)) {}
    RecordsetPtr Execute(StringView statement) override
    {
        look_(statement, "va");
        try {
            RecordsetPtr rows = inner_->Execute(statement);
            look_(statement, "hecho");
            return rows;
        } catch (const RuntimeError&) {
            look_(statement, "fallo");
            throw;
        }
    }
    RecordsetPtr executeNative(StringView statement) override { return inner_->executeNative(statement); }
    EngineInfo engine() override { return inner_->engine(); }

private:
    ConnectionPtr inner_;
    Look look_;
};

std::string played(const std::string& text, School school, Watched::Look look)
{
    school.centro = std::make_shared<Watched>(school.centro, std::move(look));
    const Guion guion = readGuion(text);
    Play play(guion, school, scriptedStage);
    play.run();
    return toUtf8(play.transcript().text());
}

/// A school on the disk or on the server. Who forks has no connection open: no two processes may share one.
class Stations : public testing::TestWithParam<const char*> {
protected:
    Stations()
    {
        std::filesystem::create_directory(folder);
        const bool server = GetParam() == std::string("postgres");
        url = server ? u"odbc:DSN=zv_prueba;ESQUEMA=puestos" + decimalText(Long{getpid()})
                     : u"sqlite:" + (folder / "colegio.db").u16string();
        registerEngine(sqliteEngine());
        registerEngine(odbcEngine());
        installModule();
    }
    ~Stations() override
    {
        for (const Database which : {Database::centro, Database::borrado, Database::entrada})
            engineOf(url).remove(locationOf(url), which);
        std::filesystem::remove_all(folder);
    }
    void create() { createSchool(url, fillSampleSchool); }
    /// The first value of the first row.
    int one(StringView statement)
    {
        const School school = openSchool(url);
        return CLng(school.centro->executeNative(statement)->row().at(0));
    }
    /// Another process, whose lines come out of the file.
    static std::pair<pid_t, FILE*> start(const std::function<int(int out)>& life)
    {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const pid_t process = fork();
        if (process == 0) {
            close(ends[0]);
            _exit(life(ends[1]));
        }
        close(ends[1]);
        return {process, fdopen(ends[0], "r")};
    }
    void meet(const std::function<void()>& begin, const std::function<void()>& end);
    static int ended(std::pair<pid_t, FILE*> station)
    {
        int status = 0;
        fclose(station.second);
        waitpid(station.first, &status, 0);
        return status;
    }

    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("zv-puestos-" + number(getpid()));
    String url;
};

TEST_P(Stations, eight_insert_into_the_same_catalogues_through_the_dialogs)
{
    struct Catalogue {
        const char *node, *form;
        StringView table;
    };
    constexpr Catalogue catalogues[] = {{"65", "Idioma", u"EstadoCivil"},
                                        {"52", "Idioma", u"Idioma"},
                                        {"34", "Pais", u"Pais"},
                                        {"38", "Provincia", u"Provincia"}};
    create();
    const int rows = times(24, 250);
    std::string command = "cd '" + folder.string() + "';";
    for (int station = 0; station < 8; ++station) {
        const std::string name = number(station);
        std::ofstream guion(folder / (name + ".guion"));
        for (int row = 0; row < rows; ++row) {
            const Catalogue& each = catalogues[row % 4];
            guion << "abrir " << each.node << " 1 0\nescribir txt" << each.form << " \"Puesto " << name << " "
                  << row << "\"\npulsar cmd" << each.form << "(0)\n";
        }
        command += "timeout 600 " ZVCONF " guion --en '" + toUtf8(url) + "' " + name + ".guion > " + name +
                   ".txt 2>&1 & ";
    }
    ASSERT_EQ(std::system((command + "wait").c_str()), 0);
    for (int station = 0; station < 8; ++station) {
        std::ostringstream seen;
        seen << std::ifstream(folder / (number(station) + ".txt")).rdbuf();
        for (const char* bad : {"> bip", "> mensaje", "> error", "> inaccesible", ".guion:"})
            EXPECT_EQ(seen.str().find(bad), std::string::npos) << seen.str().substr(0, 2000);
    }
    int found = 0;
    for (const Catalogue& each : catalogues) {
        const String from = u" FROM " + String(each.table);
        found += one(u"SELECT COUNT(DISTINCT Descripcion)" + from + u" WHERE Descripcion LIKE 'Puesto %'");
        EXPECT_EQ(one(u"SELECT COUNT(*)" + from),
                  one(u"SELECT COUNT(DISTINCT ID" + String(each.table) + u")" + from));
    }
    EXPECT_EQ(found, 8 * rows);
}

TEST_P(Stations, two_never_get_the_same_row)
{
    create();
    const int rounds = times(200, 10000);
    struct Shared {
        std::atomic<int> inside{0}, twice{0}, granted{0};
    };
    void* room = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto* shared = new (room) Shared;
    const auto life = [&](Integer user) {
        return start([&, user](int) {
            const School school = openSchool(url);
            const Station station{u"puesto " + decimalText(user), [](StringView) { return false; }};
            for (int round = 0; round < rounds; ++round) {
                const Long row = round % 3;
                if (registerRow(*school.centro, station, u"frmPais", row, user))
                    continue;
                const int mine = 1 << row;
                shared->twice += (shared->inside.fetch_or(mine) & mine) != 0;
                ++shared->granted;
                shared->inside &= ~mine;
                unregisterRow(*school.centro, station, u"frmPais", row);
            }
            return 0;
        });
    };
    const auto first = life(1), second = life(2);
    EXPECT_EQ(ended(first), 0);
    EXPECT_EQ(ended(second), 0);
    EXPECT_EQ(shared->twice, 0);
    EXPECT_GT(shared->granted, rounds / 2);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM RegistroActivo"), 0);
    munmap(room, sizeof(Shared));
}

/// Saves of a bank with a new branch, and now and then of a section's guidance.
std::string saves(int first, int count)
{
    std::string text;
    for (int i = first; i < first + count; ++i) {
        text += "abrir 30 2 1\nescribir txtBanco(1) \"Banco " + number(i) +
                "\"\npestana mstBanco 2\npulsar cmdBotonera(2)\nescribir txtSucursal(0) \"Sucursal " +
                number(i) + "\"\nescribir txtSucursal(2) \"" + number(i, 4) +
                "\"\npulsar cmdSucursal(0)\npulsar cmdBotonera(0)\n";
        if (i % 4 == 3)
            text +=
                "abrir 122 1 0\nelegir cboCursos 0\nelegir cboSecciones 0\npulsar cmdNotaManual1(0)\nelegir "
                "cboRespuesta(0) " +
                number(i / 4 % 3) + "\npulsar cmdNotaManual1(0)\ncerrar\n";
    }
    return text;
}

/// What the saves write, line by line.
std::vector<String> written(Connection& centro)
{
    std::vector<String> lines;
    for (const StringView table : {u"Banco", u"Sucursal", u"ConsejoOrientador_Nota"}) {
        const RecordsetPtr rows = centro.Execute(u"Select * From " + String(table) + u" Order By 1");
        for (; !rows->Eof(); rows->MoveNext()) {
            String& line = lines.emplace_back(table);
            for (const Value& value : rows->row())
                line += u"|" + (String() + value);
        }
    }
    return lines;
}

TEST_P(Stations, one_killed_while_it_saves_leaves_what_had_returned_and_no_more)
{
    create();
    School shadow = temporarySchool(u"sqlite:");
    fillSampleSchool(shadow);
    std::mt19937 source(7);
    const auto chance = [&](unsigned below) { return static_cast<unsigned>(source() % below); };
    int held = 0, open = 0, applied = 0;
    const int kills = times(10, 100);
    for (int kill = 0; kill < kills; ++kill) {
        const auto station = start([&](int out) {
            played(saves(1000 + kill * 8, 8), openSchool(url), [&](StringView statement, const char* what) {
                const std::string line = std::string(what) + " " + toUtf8(statement) + "\n";
                static_cast<void>(!write(out, line.data(), line.size()));
            });
            return 0;
        });
        const unsigned wanted = chance(150);
        std::string pending;
        char* line = nullptr;
        std::size_t room = 0;
        for (unsigned lines = 0; getline(&line, &room, station.second) > 0; ++lines) {
            const std::string text(line, std::string(line).size() - 1);
            const std::string statement = text.substr(text.find(' ') + 1);
            const bool writes = statement.find("RegistroActivo") == std::string::npos &&
                                std::string("IiUuDd").find(statement[0]) != std::string::npos;
            if (writes && text.starts_with("hecho"))
                shadow.centro->Execute(fromUtf8(statement));
            if (writes)
                pending = text.starts_with("va") ? statement : "";
            if (lines == wanted) {
                usleep(chance(3000));
                ::kill(station.first, SIGKILL);
            }
        }
        free(line);
        EXPECT_EQ(ended(station), SIGKILL) << "it was to be killed while it saved";
        {
            const School school = openSchool(url);
            if (written(*school.centro) != written(*shadow.centro) && !pending.empty()) {
                shadow.centro->Execute(fromUtf8(pending));
                ++applied;
            }
            open += !pending.empty();
            ASSERT_EQ(written(*school.centro), written(*shadow.centro)) << pending;
            held += !school.centro->Execute(u"SELECT Fila FROM RegistroActivo")->Eof();
        }
        EXPECT_EQ(ended(start([&](int) {
                      const School school = openSchool(url);
                      const bool refused = registerRow(*school.centro, thisStation(), u"frmBanco", 1, 99);
                      unregisterRow(*school.centro, thisStation(), u"frmBanco", 1);
                      return int{refused};
                  })),
                  0)
            << "the next station gets the row at once";
    }
    EXPECT_GT(held, 0);
    std::cout << kills << " kills: " << held << " with the row open, " << open
              << " within a statement, of which " << applied << " stayed\n";
}

constexpr const char* refused = R"(abrir 65 2 1
> muestra frmEstadoCivil "Propiedades del Estado Civil Soltero/a"
escribir txtIdioma "Otro"
pulsar cmdIdioma(0)
> bip
> mensaje 16 "ZORVEL GESTIÓN ESCOLAR" "ERROR al actualizar la base de datos"
ver txtIdioma.Text
> txtIdioma.Text "Otro"
pulsar cmdIdioma(1)
> cierra frmEstadoCivil
abrir 65 2 1
> muestra frmEstadoCivil "Propiedades del Estado Civil Soltero/a"
escribir txtIdioma "Otro"
pulsar cmdIdioma(0)
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

/// An obstacle begins at the first update and at the first insert of a dialog; the next attempt is free of
/// it.
void Stations::meet(const std::function<void()>& begin, const std::function<void()>& end)
{
    create();
    std::set<StringView> met;
    bool there = false;
    const std::string seen = played(refused, openSchool(url), [&](StringView statement, const char* what) {
        for (const StringView act : {u"Update EstadoCivil", u"Insert into EstadoCivil"})
            if (what == std::string("va") && statement.starts_with(act) && met.insert(act).second) {
                begin();
                there = true;
            }
        if (what == std::string("fallo") && there && !statement.starts_with(u"Update")) {
            end();
            there = false;
        }
    });
    EXPECT_EQ(seen, refused);
    EXPECT_FALSE(there);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion IN ('Otro','Nuevo')"), 2);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion='Perdido'"), 0);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM RegistroActivo"), 0);
}

TEST_P(Stations, a_table_that_another_holds_past_the_wait_costs_a_message)
{
    School other;
    meet(
        [&] {
            other = openSchool(url);
            other.centro->executeNative(GetParam() == std::string("sqlite") ? u"BEGIN IMMEDIATE" : u"BEGIN");
            if (GetParam() != std::string("sqlite"))
                other.centro->executeNative(u"LOCK TABLE EstadoCivil, RegistroActivo IN EXCLUSIVE MODE");
        },
        [&] {
            other.centro->executeNative(u"ROLLBACK");
            other = {};
        });
}

class FullDisk : public Stations {};

TEST_P(FullDisk, costs_a_message)
{
    const bool mounted = mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=16m") == 0;
    const std::filesystem::path filler = folder / "relleno";
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    meet(
        [&] {
            // Where no small disk can be had, no file may grow.
            const rlimit now{std::filesystem::file_size(folder / "colegio.db-wal"), before.rlim_max};
            if (!mounted)
                setrlimit(RLIMIT_FSIZE, &now);
            for (std::ofstream file(filler); mounted && file.put('x').flush();)
                file << std::string(4096, 'x');
        },
        [&] {
            setrlimit(RLIMIT_FSIZE, &before);
            std::filesystem::remove(filler);
        });
    std::cout << (mounted ? "a small disk\n" : "a limit of size\n");
    if (mounted)
        umount2(folder.c_str(), MNT_DETACH);
}

INSTANTIATE_TEST_SUITE_P(each, Stations, testing::Values("sqlite", "postgres"),
                         [](const auto& each) { return each.param; });

INSTANTIATE_TEST_SUITE_P(each, FullDisk, testing::Values("sqlite"));

} // namespace
} // namespace zv
