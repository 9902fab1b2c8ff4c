#include "odbc/Moving.h"

#include "care/copies/Copies.h"
#include "data/NumberOf.h"
#include "estaciones/Stations.h"
#include "suite/Sample.h"

#include <atomic>
#include <fstream>
#include <iostream>
#include <set>
#include <thread>

using namespace zv;

/// Parts that lack or are spoilt, side files that would spoil the new ones, a school with a name that a
/// restore could choose, links, and moves that were cut after each one of them.
TEST_F(Moving, a_restore_takes_the_place_of_whatever_is_there)
{
    namespace fs = std::filesystem;
    const String one = file(u"uno.db"), link = file(u"enlace.db"), neighbour = file(u"uno.restaurado.db");
    const fs::path copy = folder / "una.zvcopia", live = folder / "uno.db", made = folder / "uno.db.creando";
    createSchool(one, fillSample);
    createSchool(neighbour);
    care::takeCopy(one, copy, "", "");
    const auto copied = contentsAt(one);
    const auto check = [&](const String& trial) {
        SCOPED_TRACE(toUtf8(trial));
        EXPECT_EQ(care::differences(contentsAt(one), copied), std::vector<String>());
        int kept = 0;
        for (const auto& each : fs::directory_iterator(folder)) {
            const std::string name = each.path().filename();
            kept += name.starts_with("uno.antes") && name.ends_with(".db") ? 1 : 0;
            if (name.starts_with("uno.antes"))
                fs::remove(each);
            for (const char* passing : {"haciendo", "creando", "cambiando"})
                EXPECT_EQ(name.find(passing), std::string::npos) << name;
        }
        return kept;
    };
    for (const Database which : everyDatabase) {
        const fs::path harmed = fileOf(live, which);
        fs::create_symlink(harmed, fileOf(folder / "enlace.db", which));
        for (const int size : {-1, 0, 5000, 30000}) {
            if (size < 0)
                fs::remove(harmed);
            else
                std::ofstream(harmed, std::ios::binary) << std::string(static_cast<std::size_t>(size), 'x');
            std::ofstream(fs::path(harmed) += "-wal") << "of another";
            for (const Database each : everyDatabase)
                if (fs::exists(fileOf(live, each)))
                    fs::permissions(fileOf(live, each), fs::perms(0640));
            care::restoreCopy(copy, one);
            EXPECT_EQ(fs::status(harmed).permissions(), fs::perms(0640));
            EXPECT_EQ(check(fileOf(harmed, which).u16string()), size < 0 ? 2 : 3);
        }
    }
    care::restoreCopy(copy, link);
    EXPECT_TRUE(fs::is_symlink(folder / "enlace.db"));
    EXPECT_EQ(check(u"enlace"), 3);
    EXPECT_EQ(contentsAt(neighbour).size(), copied.size());
    for (int moves = 0; moves <= 6; ++moves) {
        openSchool(one).centro->Execute(u"DELETE FROM profesion");
        fs::create_directory(made);
        care::restoreCopy(copy, file(u"otro.db"));
        std::ofstream(folder / "uno.db.cambiando") << "uno.db.creando/uno.db\nuno.antes.db\n";
        int move = 0;
        for (const Database which : everyDatabase) {
            fs::rename(fileOf(folder / "otro.db", which), fileOf(made / "uno.db", which));
            if (move++ < moves)
                fs::rename(fileOf(live, which), fileOf(folder / "uno.antes.db", which));
            if (move++ < moves)
                fs::rename(fileOf(made / "uno.db", which), fileOf(live, which));
        }
        inspectSchool(one);
        EXPECT_EQ(check(decimalText(Long{moves})), 3);
    }
}

TEST_F(Moving, stations_that_start_while_a_school_is_restored_find_the_old_or_the_new)
{
    const String one = file(u"uno.db");
    createSchool(one, fillSample);
    const std::filesystem::path copy = folder / "una.zvcopia";
    care::takeCopy(one, copy, "", "");
    std::atomic<bool> ended = false;
    std::atomic<int> opened = 0, failed = 0;
    std::vector<std::thread> stations;
    for (int station = 0; station < 3; ++station)
        stations.emplace_back([&] {
            for (; !ended; usleep(20000))
                try {
                    rowsOf(openSchool(one).centro);
                    ++opened;
                } catch (const std::exception& error) {
                    std::cerr << error.what() << '\n';
                    ++failed;
                }
        });
    std::set<String> kept;
    // On a busy machine a station is seldom out of the way.
    const int trials = times(brief(25, 8), 1000);
    for (int trial = 0; trial < trials || (kept.size() < 2 && trial < 20 * trials); ++trial)
        numberOf([&] { kept.insert(care::restoreCopy(copy, one)); });
    ended = true;
    for (std::thread& each : stations)
        each.join();
    EXPECT_EQ(failed, 0);
    EXPECT_GT(opened, 0);
    EXPECT_GT(kept.size(), 1U);
    for (const String& each : kept)
        EXPECT_EQ(care::differences(contentsAt(one), contentsAt(each)), std::vector<String>());
    std::cout << "restored " << kept.size() << " times, opened " << opened << " times\n";
}

struct Restoring : MovingToServer {};

TEST_P(Restoring, a_restore_on_a_server_keeps_grants_and_mends_what_lacks)
{
    const String name = u"mudanza_de_un_colegio_de_nombre_largo" + decimalText(static_cast<Long>(getpid()));
    const String there = (isMaria() ? u"odbc:DSN=zv_maria;ESQUEMA=" : u"odbc:DSN=zv_prueba;ESQUEMA=") + name;
    const std::filesystem::path copy = folder / "una.zvcopia";
    createSchool(there, fillSample);
    care::takeCopy(there, copy, "", "");
    const auto copied = contentsAt(there);
    const auto run = [&](StringView text) { openSchool(there).centro->executeNative(text); };
    // Elsewhere rights belong to the name of a database.
    if (!isMaria()) {
        run(u"GRANT USAGE ON SCHEMA " + name + u" TO PUBLIC");
        run(u"GRANT SELECT ON Pais TO PUBLIC");
    }
    for (const bool lacks : {false, true}) {
        if (lacks)
            run(u"DROP SCHEMA " + name + (isMaria() ? u"_borrado" : u"_borrado CASCADE"));
        const String kept = care::restoreCopy(copy, there);
        EXPECT_EQ(care::differences(contentsAt(there), copied), std::vector<String>());
        if (!lacks) {
            EXPECT_EQ(care::differences(contentsAt(kept), copied), std::vector<String>());
        }
        EXPECT_TRUE(isMaria() ||
                    CBool(openSchool(there)
                              .centro
                              ->executeNative(u"SELECT CAST(has_schema_privilege('public','" + name +
                                              u"','USAGE') AND has_table_privilege('public','" + name +
                                              u".pais','SELECT') AS INTEGER) AS kept")
                              ->Fields(u"kept")));
        remove(kept);
    }
    remove(there);
}

INSTANTIATE_TEST_SUITE_P(each, Restoring, testing::Values("postgres", "mariadb"),
                         [](const auto& each) { return each.param; });
