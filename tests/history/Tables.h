#pragma once

#include "data/Engine.h"
#include "data/Schema.h"
#include "data/history/HistoryConnection.h"
#include "data/history/Rows.h"

#include <map>
#include <set>

namespace zv {

/// Those of a table in the schema.
inline std::vector<String> columnNames(StringView table)
{
    std::vector<String> names;
    for (const schema::Column& each : schema::table(table)->columns())
        names.emplace_back(each.name);
    return names;
}

/// What stands in the tables of a school, but for the history's own and the registrations.
class Tables {
public:
    enum class Which { all, written /** Those that dialogs write. */ };
    Tables(Connection& centro, Engine& engine, Which which = Which::all)
    {
        auto* const ours = dynamic_cast<history::HistoryConnection*>(&centro);
        for (const FoundTable& each : engine.tables(ours != nullptr ? *ours->inner() : centro))
            if (const schema::Table* table = schema::table(each.name);
                table != nullptr && !sameName(each.name, u"RegistroActivo") &&
                (which == Which::all || table->use != schema::Use::read))
                for (const history::Fields& row : history::rowsOf(centro, each.name, each.columns, u""))
                    add(String(table->name), history::keyOf(*table, row), row);
    }

    /// Does to them what the entry says was done; false where they have no such row.
    bool replay(const history::Entry& entry)
    {
        using history::Kind;
        if (!history::wroteRow(entry.kind))
            return true;
        auto& rows = rows_[entry.table];
        const history::Fields before = history::fieldsIn(entry.before);
        const history::Fields after = history::fieldsIn(entry.after);
        history::Fields row = after;
        if (entry.kind != Kind::added) {
            const auto holds = [&](const history::Fields& fields) {
                return std::ranges::all_of(before, [&](const history::Field& was) {
                    const Value* is = history::valueOf(fields, was.column);
                    return is != nullptr && history::same(*is, was.value);
                });
            };
            auto place = rows.lower_bound({entry.row, u""});
            while (place != rows.end() && place->first == entry.row &&
                   !holds(history::fieldsIn(place->second)))
                ++place;
            if (place == rows.end() || place->first != entry.row)
                return false;
            row = history::fieldsIn(place->second);
            for (history::Field& field : row)
                if (const Value* now = history::valueOf(after, field.column))
                    field.value = *now;
            rows.erase(place);
        }
        if (entry.kind != Kind::removed)
            add(entry.table, entry.row, row);
        return true;
    }

    friend bool operator==(const Tables&, const Tables&) = default;
    /// What one has and the other has not, for the message of a failing test.
    friend std::string difference(const Tables& one, const Tables& other)
    {
        std::string text;
        if (one == other)
            return text;
        for (const auto& [from, to, sign] : {std::tuple(&one, &other, '-'), std::tuple(&other, &one, '+')})
            for (const auto& [table, rows] : from->rows_)
                for (const auto& row : rows)
                    if (const auto found = to->rows_.find(table);
                        found == to->rows_.end() || found->second.count(row) < rows.count(row))
                        text += sign + toUtf8(table + u" " + row.second) + "\n";
        return text;
    }

private:
    void add(const String& table, const String& key, const history::Fields& row)
    {
        rows_[table].insert({key, textOf(row)});
    }

    std::map<String, std::multiset<std::pair<String, String>>> rows_;
};

/// The same tables, or a failure that tells the first rows that differ.
#define EXPECT_SAME_TABLES(one, other) EXPECT_EQ(difference(one, other).substr(0, 600), "")

} // namespace zv
