#include "data/Schema.h"
#include "data/history/HistoryConnection.h"

#include <algorithm>
#include <map>
#include <vector>

namespace zv::history {

void HistoryConnection::addDifferences(Appending& log, const Write& write, Rows before, Rows after)
{
    const String table(schema::table(write.table)->name);
    // By key: rows that are the same have the same, and a statement may have written all of a large table.
    std::map<String, std::vector<std::size_t>> places;
    for (std::size_t i = 0; i < after.size(); ++i)
        places[after[i].key].push_back(i);
    std::vector<bool> taken(after.size());
    const auto take = [&](const Row& was, const auto& fits) -> const Row* {
        const auto found = places.find(was.key);
        if (found == places.end())
            return nullptr;
        const auto place = std::ranges::find_if(found->second, [&](std::size_t i) { return fits(after[i]); });
        if (place == found->second.end())
            return nullptr;
        const Row& row = after[*place];
        taken[*place] = true;
        found->second.erase(place);
        return &row;
    };
    // What is the same on both sides was not written; where a key may stand twice, as often as it stands on
    // both.
    std::erase_if(before, [&](const Row& was) {
        return take(was, [&](const Row& each) { return same(each.fields, was.fields); }) != nullptr;
    });
    for (const Row& was : before) {
        const Row* is = take(was, [](const Row&) { return true; });
        if (is == nullptr) {
            add(log, {.kind = Kind::removed, .table = table, .row = was.key, .before = textOf(was.fields)});
            continue;
        }
        Fields old;
        Fields now;
        for (std::size_t i = 0; i < was.fields.size(); ++i)
            if (!same(was.fields[i].value, is->fields[i].value)) {
                old.push_back(was.fields[i]);
                now.push_back(is->fields[i]);
            }
        add(log, {.kind = Kind::changed,
                  .table = table,
                  .row = was.key,
                  .before = textOf(old),
                  .after = textOf(now)});
    }
    for (std::size_t i = 0; i < after.size(); ++i)
        if (!taken[i])
            add(log,
                {.kind = Kind::added, .table = table, .row = after[i].key, .after = textOf(after[i].fields)});
}

} // namespace zv::history
