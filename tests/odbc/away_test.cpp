#include "data/OneDatabase.h"
#include "data/ServerAway.h"
#include "data/odbc/OdbcEngine.h"
#include "servidor/OwnServer.h"

#include <thread>
#include <unistd.h>

namespace zv {
namespace {

struct Own : testing::WithParamInterface<const char*> {
    OwnServer server{std::filesystem::temp_directory_path() / ("zv-ausente-" + std::to_string(getpid())),
                     GetParam()};
};

/// A server that goes away, and a person who waits for it or does not.
class Away : public Own, public OneDatabase {
protected:
    Away() : OneDatabase(odbcEngine(), server.location())
    {
        base->Execute(u"CREATE TABLE t (a INTEGER)");
        onServerAway(&port);
    }
    ~Away() override { onServerAway(nullptr); }
    bool back(const ServerAway& away)
    {
        const auto still = away.tryAgain();
        EXPECT_TRUE(still && !still->refuses && !still->words.empty());
        server.to("seguir");
        while (away.tryAgain())
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return true;
    }
    std::int32_t insert(int number) const
    {
        return numberOf([&] { base->Execute(u"Insert into t values (" + decimalText(number) + u")"); });
    }
    using Own::server;
    std::function<bool(const ServerAway&)> answer = [this](const ServerAway& away) { return back(away); };
    int asked = 0;

private:
    const WaitForServer port = [this](const ServerAway& away) {
        asked += !away.givenUp;
        return !away.givenUp && answer(away);
    };
};

TEST_P(Away, is_waited_for_before_a_statement_is_sent_and_never_after)
{
    server.to("cortar");
    EXPECT_EQ(insert(1), 0);
    EXPECT_EQ(asked, 1);
    std::thread power([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        server.to("cortar");
    });
    EXPECT_EQ(numberOf([&] {
                  base->Execute(GetParam() == std::string("mariadb")
                                    ? u"Insert into t Select SLEEP(20)"
                                    : u"Insert into t Select 2 From pg_sleep(20)");
              }),
              failure::connectionLost);
    power.join();
    EXPECT_EQ(asked, 1) << "it may have run";
    EXPECT_EQ(insert(3), 0);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(all(u"Select a from t order by a"), u"1 3 ");
}

TEST_P(Away, is_waited_for_before_a_transaction_and_not_within_it)
{
    server.to("cortar");
    base->Execute(u"BEGIN");
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(insert(1), 0);
    base->Execute(u"COMMIT");
    for (const StringView end : {u"COMMIT", u"ROLLBACK"}) {
        base->Execute(u"BEGIN");
        EXPECT_EQ(insert(2), 0);
        server.to("cortar");
        EXPECT_EQ(insert(3), failure::connectionLost);
        server.to("seguir");
        EXPECT_EQ(insert(4), failure::connectionLost) << "what came before it is gone";
        EXPECT_EQ(numberOf([&] { base->Execute(end); }), end == u"COMMIT" ? failure::connectionLost : 0);
    }
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(insert(5), 0);
    EXPECT_EQ(all(u"Select a from t order by a"), u"1 5 ");
}

TEST_P(Away, that_was_given_up_is_told_so_until_a_link_opens_and_nobody_waits_who_has_no_person)
{
    const auto words = [this] {
        try {
            base->Execute(u"Select a from t");
        } catch (const RuntimeError& error) {
            return error.description();
        }
        return String();
    };
    server.to("cortar");
    String alone;
    std::thread([&] { alone = words(); }).join();
    {
        const Unattended work;
        EXPECT_EQ(words(), alone);
    }
    EXPECT_FALSE(alone.empty());
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(numberOf([&] { base->Execute(u"ROLLBACK"); }), 0) << "nothing had begun";
    for (int outage = 1; outage <= 2; ++outage) {
        answer = [&](const ServerAway&) {
            EXPECT_EQ(words(), alone) << "a timer's, while somebody waits";
            return false;
        };
        for (int statement = 0; statement < 200; ++statement)
            EXPECT_EQ(words(), alone);
        EXPECT_EQ(asked, outage);
        server.to("seguir");
        EXPECT_EQ(words(), u"");
        server.to("cortar");
    }
    answer = [this](const ServerAway& away) { return back(away); };
    EXPECT_EQ(words(), u"");
}

INSTANTIATE_TEST_SUITE_P(each, Away, testing::Values("postgres", "mariadb"),
                         [](const auto& each) { return each.param; });

} // namespace
} // namespace zv
