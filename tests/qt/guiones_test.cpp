#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "qt/Screen.h"
#include "qt/stage/QtStage.h"
#include "robot/PlayGuiones.h"

#include <filesystem>
#include <sstream>

namespace zv::test {

std::vector<std::filesystem::path> guiones()
{
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(GUIONES))
        if (entry.path().extension() == ".guion")
            found.push_back(entry.path());
    std::ranges::sort(found);
    return found;
}

struct RealWindows : testing::TestWithParam<std::filesystem::path> {};

TEST_P(RealWindows, show_what_the_guion_expects)
{
    registerEngine(sqliteEngine());
    installModule();
    std::ostringstream out;
    const String words[] = {u"--comprobar", GetParam().u16string()};
    EXPECT_EQ(playGuiones(words, qtStage({}), out, out), 0) << out.str();
}

INSTANTIATE_TEST_SUITE_P(guion, RealWindows, testing::ValuesIn(guiones()), [](const auto& each) {
    std::string name = each.param.lexically_relative(GUIONES).replace_extension().string();
    std::ranges::replace_if(
        name, [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
});

} // namespace zv::test
