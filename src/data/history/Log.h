#pragma once

#include "data/Connection.h"
#include "data/history/Entry.h"

#include <functional>

namespace zv::history {

/// Tables of the history, in the live database: the entries, and one row with the newest's number and link,
/// which every writer locks first, so that entries of all stations form one chain.

/// Name prefix of the history's own tables.
inline constexpr StringView ownPrefix = u"Historial";

/// Fails, with what to do, where a newer version keeps the history; so do the functions below, but for
/// forEach() and entries().
void requireKnown(Connection& centro);
/// Switches it on, and creates what is missing of the tables: a head that went begins again at the newest
/// entry.
void activate(Connection& centro);
/// Switches it off; what is there stays. Without the tables nothing happens.
void deactivate(Connection& centro);
/// Whether the tables are there and the history is on.
bool isActive(Connection& centro);

/// The newest entry: what a copy of the database is noted with.
struct Head {
    Long number = 0; ///< 0 while there is none.
    String link;
};
/// Fails with tableMissing where there is no history.
Head headOf(Connection& centro);

/// Appender within a transaction: locks the head, so that until its end no other station appends.
class Appending {
public:
    explicit Appending(Connection& centro);
    /// Number that the next entry gets.
    Long next() const { return head_.number + 1; }
    /// Appends; fills in number, moment, salt, digest and link. Gives the number.
    Long add(Entry entry);
    /// Writes what was not written yet, and the head; the last thing before the transaction ends.
    void finish();

private:
    void write();

    Connection& centro_;
    Head head_;
    String moment_;
    String rows_; ///< Entries that go into one statement.
    int waiting_ = 0;
    bool changed_ = false;
};

/// Reads the entries that meet the condition ("" for all), in the order of their numbers or backwards. Each
/// goes to the callback, which returns false for no more.
void forEach(Connection& centro, StringView condition, const std::function<bool(const Entry&)>& use,
             bool newestFirst = false);
std::vector<Entry> entries(Connection& centro, StringView condition, bool newestFirst = false);

} // namespace zv::history
