#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "robot/PlayGuiones.h"
#include "robot/ScriptedStage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

using namespace zv;

TEST(Reuse, every_guion_sees_the_same_without_it)
{
    registerEngine(sqliteEngine(Durability::full, Reuse::no));
    installModule();
    std::vector<String> words{u"--comprobar"};
    for (const auto& each : std::filesystem::recursive_directory_iterator(GUIONES))
        if (each.path().extension() == ".guion")
            words.push_back(each.path().u16string());
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(playGuiones(words, scriptedStage, out, err), 0) << out.str() << err.str();
    EXPECT_GT(words.size(), 20U);
    registerEngine(sqliteEngine());
}
