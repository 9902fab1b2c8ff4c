#pragma once

#include "data/Connection.h"

#include <set>

namespace zv::sample {

/// Row writer of one database: all columns in their order.
class Writer {
public:
    explicit Writer(Connection& connection) : connection_(connection) {}
    void row(StringView table, const std::vector<Value>& values);
    /// Parses rows separated by "|" and fields by ";". An empty field is Null, '' the empty
    /// text.
    void rows(StringView table, StringView text) { write(table, text, false); }
    /// The same, with keys counted from 1 in front.
    void numbered(StringView table, StringView text) { write(table, text, true); }
    /// Whether it wrote a row of the table.
    bool wrote(StringView table) const { return tables_.contains(String(table)); }

private:
    void write(StringView table, StringView text, bool withNumber);

    Connection& connection_;
    std::set<String> tables_;
};

/// Splits a text; gives one piece at least.
std::vector<StringView> split(StringView text, char16_t sign);

/// Pseudo-random generator with the same numbers on every machine, which the library's distributions do not
/// give.
class Dice {
public:
    /// Any seed but 0, each with a sequence of its own.
    explicit Dice(std::uint32_t seed = 20240912) : state_(seed) {}
    /// From 0 to one below the limit.
    int below(int limit);
    bool once(int inHowMany) { return below(inHowMany) == 0; }
    template <class List>
    const auto& of(const List& list)
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }

private:
    std::uint32_t state_;
};

} // namespace zv::sample
