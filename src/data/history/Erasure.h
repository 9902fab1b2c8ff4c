#pragma once

#include "data/Schema.h"
#include "data/history/Log.h"
#include "runtime/Time.h"

namespace zv::history {

/// Erasure of texts for data protection: `before`, `after` and `salt` of entries become NULL, and an entry of
/// the kind `erased` says whose they were. Digest and link stay, so that the chain still proves.

/// Numbers of the entries with texts about a row, descending: its own, and failed or unread statements that
/// name it. About a pupil, whose row is in "Alumno", are those of all tables whose rows are a pupil's.
std::vector<Long> entriesAbout(Connection& centro, const schema::Table& table, Long key);
/// Erases these texts, in a transaction; gives the number of entries.
Long eraseAbout(Connection& centro, const schema::Table& table, Long key);

/// Months after which texts are to be erased; 0 for never.
Long monthsKept(Connection& centro);
void keepMonths(Connection& centro, Long months);
/// The moment so many calendar months before another.
Seconds monthsBefore(Seconds moment, Long months);
/// Number of entries with texts from before the moment.
Long countOlder(Connection& centro, Seconds limit);
/// Erases these texts, in a transaction; gives the number of entries.
Long eraseOlder(Connection& centro, Seconds limit);

/// Which entries the chain's erasing entries say are empty.
class Erasures {
public:
    explicit Erasures(Connection& centro);
    bool cover(const Entry& entry) const;

private:
    struct Listed {
        Long first = 0;
        Long last = 0;
    };
    struct Aged {
        String limit;
        Long by = 0; ///< Number of the erasing entry, which is later than what it erased.
    };
    std::vector<Listed> listed_; ///< By `first`.
    std::vector<Aged> aged_;
};

} // namespace zv::history
