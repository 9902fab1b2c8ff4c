// What a copy of a school costs: how long a station's row waits while copies are taken one after the other,
// against the same stations without copies; and the time of a copy of a large school, against SQLite's bare
// backup of the same files where the school is one of files. With synchronous OFF: eight stations that wait
// for one disk wait longer for it, with copies or without, than for a copy.
//
//   bench_copias [URL [COPIES [STATIONS [MEGABYTES]]]]     a place for a new school, or else a file of its
//                                                          own; 20 copies, 8 stations, 256 MB if not given

#include "Measure.h"

#include "care/copies/Copies.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"
#include "runtime/Convert.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"

#include <atomic>
#include <chrono>
#include <iostream>
#include <sqlite3.h>
#include <thread>

namespace {

using namespace zv;
using namespace zv::bench;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Setting {
    std::filesystem::path folder = std::filesystem::temp_directory_path() / "zv_bench_copias";
    String url;
    int copies = 20;
    int stations = 8;
    Long megabytes = 256;

    std::filesystem::path copy() const { return folder / "una.zvcopia"; }
};

/// Waits of the stations' rows, in milliseconds.
struct Waits {
    double longest = 0;
    double middle = 0;
};

/// Stations that write a row every few milliseconds, as long as `meanwhile` runs.
Waits writing(const Setting& setting, Long firstKey, const std::function<void()>& meanwhile)
{
    std::atomic<bool> ended = false;
    std::vector<std::vector<double>> waits(static_cast<std::size_t>(setting.stations));
    std::vector<std::thread> threads;
    for (std::size_t each = 0; each < waits.size(); ++each)
        threads.emplace_back([&, each] {
            const School school = openSchool(setting.url);
            for (Long key = firstKey + static_cast<Long>(each) * 1000000; !ended; ++key) {
                const auto start = Clock::now();
                school.centro->Execute(
                    statement(u"INSERT INTO profesion (IDProfesion,nombre) VALUES ({},'x')", {key}));
                waits[each].push_back(Milliseconds(Clock::now() - start).count());
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        });
    meanwhile();
    ended = true;
    std::vector<double> all;
    for (std::size_t each = 0; each < waits.size(); ++each) {
        threads[each].join();
        all.insert(all.end(), waits[each].begin(), waits[each].end());
    }
    std::ranges::sort(all);
    return {all.back(), all[all.size() / 2]};
}

void tell(const char* name, const Waits& waits)
{
    std::cout << name << ": a row waits " << waits.middle << " ms in the middle, " << waits.longest
              << " ms at the longest\n";
}

void besideStations(const Setting& setting)
{
    double seconds = 0;
    const Waits copied = writing(setting, 1000000, [&] {
        const auto start = Clock::now();
        for (int each = 0; each < setting.copies; ++each) {
            care::takeCopy(setting.url, setting.copy(), "", "");
            std::filesystem::remove(setting.copy());
        }
        seconds = Milliseconds(Clock::now() - start).count() / 1000;
    });
    const Waits alone = writing(setting, 500000000,
                                [&] { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); });
    std::cout << setting.copies << " copies beside " << setting.stations << " stations, "
              << seconds / setting.copies << " s each\n";
    tell("with copies", copied);
    tell("without", alone);
}

/// The bare engine's backup of the three files.
double bareBackup(const Setting& setting)
{
    const auto start = Clock::now();
    const std::filesystem::path live(locationOf(setting.url));
    for (const Database which : everyDatabase) {
        sqlite3* from = nullptr;
        sqlite3* to = nullptr;
        const std::filesystem::path target = setting.folder / "bare.db";
        std::filesystem::remove(target);
        sqlite3_open(fileOf(live, which).c_str(), &from);
        sqlite3_open(target.c_str(), &to);
        sqlite3_backup* const copying = sqlite3_backup_init(to, "main", from, "main");
        sqlite3_backup_step(copying, -1);
        sqlite3_backup_finish(copying);
        sqlite3_close(from);
        sqlite3_close(to);
    }
    return Milliseconds(Clock::now() - start).count() / 1000;
}

void large(const Setting& setting)
{
    const School school = openSchool(setting.url);
    const bool file = engineOf(setting.url).ddl(*school.centro) == DdlStyle::sqlite;
    const String text = file ? u"hex(randomblob(1000))" : u"repeat(md5(random()::text),62)";
    const Long rows = setting.megabytes * 500;
    school.centro->executeNative(
        u"INSERT INTO Enfermedad (IDEnfermedad,Nombre,Descripcion) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL"
        u" SELECT i+1 FROM n WHERE i<" +
        decimalText(rows) + u") SELECT i+10000,'x'," + text + u" FROM n");
    const auto start = Clock::now();
    care::takeCopy(setting.url, setting.copy(), "", "");
    const double seconds = Milliseconds(Clock::now() - start).count() / 1000;
    std::cout << "a copy of " << std::filesystem::file_size(setting.copy()) / 1000000 << " MB: " << seconds
              << " s, checked";
    if (file)
        std::cout << "; " << seconds / bareBackup(setting) << " times the bare backup, unchecked";
    std::cout << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    Setting setting;
    std::filesystem::remove_all(setting.folder);
    std::filesystem::create_directories(setting.folder);
    setting.url = argc > 1 ? fromUtf8(argv[1]) : u"sqlite:" + (setting.folder / "colegio.db").u16string();
    setting.copies = argc > 2 ? std::atoi(argv[2]) : setting.copies;
    setting.stations = argc > 3 ? std::atoi(argv[3]) : setting.stations;
    setting.megabytes = argc > 4 ? std::atoi(argv[4]) : setting.megabytes;
    registerEngine(sqliteEngine(Durability::off));
    registerEngine(odbcEngine());
    registerCipher([key = CipherKey::random()](bool) { return key; });
    createSchool(setting.url, fillSample);
    besideStations(setting);
    large(setting);
    for (const Database which : everyDatabase)
        engineOf(setting.url).remove(locationOf(setting.url), which);
    std::filesystem::remove_all(setting.folder);
    return 0;
}
