#include "data/history/HistoryEngine.h"
#include "data/history/Undo.h"
#include "data/history/Words.h"
#include "estaciones/Stations.h"
#include "history/Tables.h"
#include "robot/FreshSchool.h"
#include "robot/Monkey.h"

#include <sstream>

namespace zv {
namespace {

using history::Plan;

constexpr StringView url = u"historial:sqlite:";

/// All openings that stand in the history by now, the newest first.
std::vector<Long> openings(Connection& centro)
{
    std::vector<Long> result;
    for (const history::Entry& each : history::entries(centro, u"Clase=1", true))
        result.push_back(each.number);
    return result;
}

/// What random acts leave behind is undone, done again, undone dialog by dialog, and done again in the same
/// way.
class Azar : public testing::TestWithParam<int> {
protected:
    Azar()
    {
        registerEngine(sqliteEngine());
        registerEngine(historyEngine());
        installModule();
    }
    Plan undo(const history::Scope& scope)
    {
        Plan plan =
            history::undo(*history::historyOf(school->school().centro), scope, {.userName = u"prueba"});
        for (const history::Obstacle& each : plan.obstacles)
            ADD_FAILURE() << toUtf8(told(each, timeHere()));
        return plan;
    }
    Tables tables() { return {*school->school().centro, engineOf(url)}; }
    void undoEach(const std::vector<Long>& each)
    {
        for (const Long opening : each)
            undo({.opening = opening});
    }

    std::optional<FreshSchool> school;
};

TEST_P(Azar, undone_backwards_is_the_first_database_and_forward_again_the_last)
{
    std::ostringstream acts;
    EXPECT_TRUE(actAtRandom({.seed = static_cast<std::uint32_t>(GetParam()),
                             .acts = times(2000, 20'000),
                             .failures = GetParam() % 2 == 0},
                            acts));
    school.emplace(url, true);
    const Tables first = tables();
    {
        const Guion guion = readGuion(acts.str());
        Play play(guion, school->school(), scriptedStage);
        play.run();
        EXPECT_TRUE(play.transcript().differences().empty()) << "the history shows";
    }
    const Tables last = tables();
    const std::vector<Long> acted = openings(*school->school().centro);
    std::size_t effects = 0;
    for (const Tables* each : {&first, &last}) {
        effects = undo(each == &first ? history::Scope{.since = 1}
                                      : history::Scope{.opening = openings(*school->school().centro).front()})
                      .effects.size();
        EXPECT_SAME_TABLES(*each, tables());
    }
    undoEach(acted);
    EXPECT_SAME_TABLES(first, tables());
    std::vector<Long> undone = openings(*school->school().centro);
    std::erase_if(undone, [&](Long each) { return each <= acted.front(); });
    // The first two are the undo of all and its undo.
    undone.resize(undone.size() < 2 ? 0 : undone.size() - 2);
    undoEach(undone);
    EXPECT_SAME_TABLES(last, tables());
    std::cout << acted.size() << " dialogs, " << history::headOf(*school->school().centro).number
              << " entries, " << effects << " effects\n";
}

INSTANTIATE_TEST_SUITE_P(seed, Azar, testing::Range(1, times(4, 21)));

} // namespace
} // namespace zv
