#include "data/sqlite/SqliteEngine.h"

#include "NumberOf.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#ifdef __linux__
#include <sys/syscall.h>
#include <unistd.h>

/// What the engine calls to wait for the disk, counted.
static int waitsForDisk = 0;
extern "C" int fdatasync(int file)
{
    ++waitsForDisk;
    return static_cast<int>(syscall(SYS_fdatasync, file));
}
#endif

using namespace zv;
namespace fs = std::filesystem;

namespace {

/// A folder of its own for each test, gone with it.
class Files : public testing::Test {
protected:
    Files() { fs::create_directories(folder); }
    ~Files() override { fs::remove_all(folder); }
    String at(StringView name) const { return (folder / fs::path(String(name))).u16string(); }
    static void put(StringView path, std::string_view bytes)
    {
        std::ofstream(fs::path(String(path))) << bytes;
    }
    ConnectionPtr made(StringView name = u"colegio.db")
    {
        ConnectionPtr result = engine->create(at(name), Database::centro);
        result->Execute(u"CREATE TABLE t (a INTEGER PRIMARY KEY, b TEXT)");
        result->Execute(u"Insert into t values (1,'x'),(2,'y'),(3,'z')");
        return result;
    }
    ConnectionPtr opened() { return engine->open(at(u"colegio.db"), Database::centro); }
    static Long count(Connection& on) { return CLng(on.Execute(u"Select count(*) from t")->row().front()); }
    std::unique_ptr<Engine> engine = sqliteEngine();
    fs::path folder = fs::temp_directory_path() /
                      ("zv-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
};

} // namespace

TEST_F(Files, what_is_wrong_with_a_file_is_told)
{
    const auto open = [&](StringView name) {
        return [=, this] { engine->open(at(name), Database::centro); };
    };
    const auto create = [&](StringView name) {
        return [=, this] { engine->create(at(name), Database::centro); };
    };
    EXPECT_EQ(numberOf(open(u"nada.db"), u"no existe"), failure::otherData);
    EXPECT_FALSE(fs::exists(at(u"nada.db")));
    EXPECT_EQ(numberOf(open(u""), u"es una carpeta"), failure::otherData);
    EXPECT_EQ(numberOf(create(u""), u"es una carpeta"), failure::otherData);
    EXPECT_EQ(numberOf([&] { engine->open(u"", Database::entrada); }, u"sqlite:FICHERO"), failure::otherData);
    EXPECT_EQ(numberOf(create(u"nada/x.db"), u"su carpeta no existe"), failure::otherData);
    EXPECT_EQ(numberOf(create(u"x.db;Servidores=a,b;PWD=SECRETO"), u"Servidores=a,b» lleva SERVIDORES="),
              failure::otherData);
    fs::create_symlink("nada.db", at(u"enlace.db"));
    EXPECT_EQ(numberOf(open(u"enlace.db"), u"es un enlace"), failure::otherData);
    EXPECT_EQ(numberOf(create(u"enlace.db"), u"es un enlace"), failure::otherData);
    EXPECT_EQ(numberOf([&] { engine->open(u"/dev/null", Database::centro); }, u"no es un fichero"),
              failure::otherData);
    put(at(u"texto.db"), std::string(4096, 'x'));
    EXPECT_EQ(numberOf(open(u"texto.db"), u"no es una base de datos"), failure::otherData);
    EXPECT_EQ(numberOf(create(u"texto.db"), u"ya existe"), failure::otherData);
    EXPECT_EQ(fs::file_size(at(u"texto.db")), 4096U);
}

TEST_F(Files, looking_changes_nothing)
{
    const auto look = [&](StringView name) { return engine->inspect(at(name), Database::centro); };
    const auto bytes = [&](StringView name) {
        return (std::ostringstream() << std::ifstream(fs::path(at(name))).rdbuf()).str();
    };
    made(u"otro.db")->executeNative(u"PRAGMA journal_mode=DELETE");
    for (const StringView name : {u"una %41#.db", u"otro.db"}) {
        if (!fs::exists(at(name)))
            made(name);
        const std::string before = bytes(name);
        EXPECT_EQ(count(*look(name)), 3);
        EXPECT_NE(numberOf([&] { look(name)->Execute(u"Delete from t"); }), 0);
        EXPECT_EQ(bytes(name), before);
    }
    {
        const ConnectionPtr perhapsWrong = engine->open(at(u"otro.db"), Database::centro);
        EXPECT_EQ(count(*perhapsWrong), 3);
        EXPECT_EQ(bytes(u"otro.db")[18], 1) << "opening alone changes nothing either";
        engine->settle(*perhapsWrong);
        EXPECT_EQ(bytes(u"otro.db")[18], 2);
    }
    put(at(u"nada.db"), "");
    EXPECT_TRUE(engine->tables(*look(u"nada.db")).empty());
    EXPECT_EQ(fs::file_size(at(u"nada.db")), 0U);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 3) << "nothing is left beside them";
    put(at(u"texto.db"), std::string(4096, 'x'));
    EXPECT_EQ(numberOf([&] { look(u"texto.db"); }, u"no es una base de datos"), failure::otherData);

    const ConnectionPtr other = made();
    EXPECT_EQ(count(*look(u"colegio.db")), 3) << "also what another station has not yet put in its place";
}

TEST_F(Files, an_open_recordset_keeps_nobody_from_writing)
{
    const ConnectionPtr here = made();
    const ConnectionPtr there = opened();
    std::vector<RecordsetPtr> open;
    for (int i = 0; i < 8; ++i)
        open.push_back(here->Execute(u"Select a, b from t"));
    there->Execute(u"Insert into t values (4,'other')");
    EXPECT_EQ(count(*here), 4);
    here->Execute(u"Insert into t values (5,'own')");
    EXPECT_EQ(count(*here), 5);
    EXPECT_EQ(count(*there), 5);
    // What was asked for before goes on to its end as it was; asked again it is new.
    Long seen = 0;
    for (; !open[0]->Eof(); open[0]->MoveNext())
        ++seen;
    EXPECT_EQ(seen, 3);
    open[0]->MoveFirst();
    here->Execute(u"Update t Set b=b+'!'");
    EXPECT_EQ(CStr(open[0]->Fields(u"b")), u"x");
    for (int i = 0; i < 4; ++i)
        open[0]->MoveNext();
    EXPECT_EQ(CStr(open[0]->Fields(u"b")), u"own");
    open.erase(open.begin() + 1, open.end());
    EXPECT_EQ(count(*here), 5);
    there->Execute(u"ALTER TABLE t ADD COLUMN c DEFAULT 'new'");
    EXPECT_EQ(CStr(here->Execute(u"Select * from t")->Fields(u"c")), u"new");
}

TEST_F(Files, what_a_statement_writes_and_gives_back_is_written_once_and_at_once)
{
    const ConnectionPtr here = made();
    const RecordsetPtr rows = here->Execute(u"Insert into t values (7,''),(8,''),(9,'') RETURNING a");
    EXPECT_EQ(count(*opened()), 6);
    rows->MoveNext();
    EXPECT_EQ(CLng(rows->Fields(u"a")), 8);
    EXPECT_EQ(numberOf([&] { rows->MoveFirst(); }), failure::otherData);
    EXPECT_EQ(count(*here), 6);
}

TEST_F(Files, a_transaction_sees_itself_and_is_kept_together)
{
    const ConnectionPtr here = made();
    const RecordsetPtr before = here->Execute(u"Select a from t");
    here->executeNative(u"BEGIN IMMEDIATE");
    const RecordsetPtr open = here->Execute(u"Select a from t");
    here->Execute(u"Delete * From t");
    EXPECT_EQ(count(*here), 0);
    EXPECT_EQ(count(*opened()), 3);
    here->executeNative(u"ROLLBACK");
    EXPECT_EQ(count(*here), 3);
    open->MoveNext();
    EXPECT_EQ(CLng(open->Fields(u"a")), 2);
}

TEST_F(Files, who_waits_too_long_fails_as_locked)
{
    const ConnectionPtr here = made();
    const ConnectionPtr there = opened();
    here->executeNative(u"BEGIN IMMEDIATE");
    const auto since = std::chrono::steady_clock::now();
    EXPECT_EQ(numberOf([&] { there->Execute(u"Delete * From t"); }), failure::locked);
    const auto waited = std::chrono::steady_clock::now() - since;
    EXPECT_GE(waited, std::chrono::milliseconds(4800));
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        here->executeNative(u"COMMIT");
    });
    EXPECT_EQ(numberOf([&] { there->Execute(u"Delete * From t"); }), 0);
    release.join();
    EXPECT_EQ(count(*here), 0);
}

TEST_F(Files, a_file_that_was_taken_away_is_a_lost_connection)
{
    const ConnectionPtr here = made();
    std::this_thread::sleep_for(std::chrono::milliseconds(10)); // A look is believed for a few of them.
    fs::rename(at(u"colegio.db"), at(u"fuera.db"));
    EXPECT_EQ(numberOf([&] { here->Execute(u"Delete * From t"); }), failure::connectionLost);
    const ConnectionPtr anew = made();
    EXPECT_EQ(numberOf([&] { here->Execute(u"Select * from t"); }), failure::connectionLost);
}

#ifdef __linux__
TEST_F(Files, what_returned_is_on_disk_but_for_registrations_outside_a_transaction)
{
    const ConnectionPtr here = made();
    here->Execute(u"CREATE TABLE RegistroActivo (Fila INTEGER)");
    here->Execute(u"CREATE TABLE RegistroActivos (Fila INTEGER)");
    for (const auto& [statement, waits] : {
             std::pair(u"Update t Set b='RegistroActivo' Where a=1", 1),
             std::pair(u"INSERT INTO RegistroActivo (Fila) VALUES (1)", 0),
             std::pair(u"Update t Set b='INSERT INTO RegistroActivo ' Where a=1", 1),
             std::pair(u"INSERT INTO RegistroActivos (Fila) VALUES (1)", 1),
             std::pair(u"UPDATE RegistroActivo SET Fila=2", 0),
             std::pair(u"BEGIN", 0),
             std::pair(u"Insert into t values (4,'w')", 0),
             std::pair(u"DELETE FROM RegistroActivo WHERE Fila=2", 0),
             std::pair(u"COMMIT", 1),
         }) {
        waitsForDisk = 0;
        here->executeNative(statement);
        EXPECT_EQ(waitsForDisk, waits) << toUtf8(statement);
    }
}
#endif
