#include "robot/ScratchSchool.h"

#include "care/copies/Contents.h"
#include "data/Schema.h"
#include "data/Schools.h"
#include "data/Transaction.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Write.h"
#include "robot/WatchedConnection.h"
#include "suite/sodium/EncryptoApi.h"
#include "suite/sodium/KeyFile.h"

#include <algorithm>

namespace zv {
namespace {

/// URL of the school's databases themselves: what is tried on is not noted.
StringView withoutHistory(StringView url)
{
    const auto history = historyEngine();
    return sameName(url.substr(0, url.find(u':')), history->scheme()) ? locationOf(url) : url;
}

/// Copy on first use of one database's tables.
class Copying {
public:
    Copying(Connection& from, Connection& to, Database which, Engine& engine) : to_(to)
    {
        for (const FoundTable& found : engine.tables(from)) {
            const auto tables = schema::tables(which);
            const auto known = std::ranges::find_if(
                tables, [&](const schema::Table& each) { return sameName(each.name, found.name); });
            if (known == tables.end())
                continue;
            FoundTable ours{found.name, {}};
            for (const String& column : found.columns)
                if (std::ranges::any_of(known->columns(), [&](const schema::Column& each) {
                        return sameName(each.name, column);
                    }))
                    ours.columns.push_back(column);
            waiting_.push_back(std::move(ours));
        }
    }

    void before(Connection& from, StringView statement)
    {
        for (auto table = waiting_.begin(); table != waiting_.end();) {
            if (!history::names(statement, table->name)) {
                ++table;
                continue;
            }
            Transaction transaction(to_);
            care::copyRows(from, to_, *table);
            transaction.commit();
            table = waiting_.erase(table);
        }
    }

private:
    Connection& to_;
    std::vector<FoundTable> waiting_;
};

} // namespace

ScratchSchool::ScratchSchool(StringView url)
{
    const StringView place = withoutHistory(url);
    Engine& engine = engineOf(place);
    const School source = engine.snapshot(locationOf(place));
    school_ = temporarySchool(place);
    for (const Database which : everyDatabase) {
        const ConnectionPtr& from = baseOf(source, which);
        ConnectionPtr& to = baseOf(school_, which);
        to = std::make_shared<WatchedConnection>(
            to, [from, copying = Copying(*from, *to, which, engine)](StringView statement) mutable {
                copying.before(*from, statement);
            });
    }
    // The key that a first illness would generate is not kept.
    registerCipher([passing = CipherKey::random()](bool) {
        return keyFileText().empty() ? passing : keyFromFile(false);
    });
}

ScratchSchool::~ScratchSchool() { registerCipher(); }

} // namespace zv
