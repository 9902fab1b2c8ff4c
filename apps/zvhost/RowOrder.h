#pragma once

#include "zvhost/RowLetters.h"

#include <QStringList>

#include <atomic>
#include <memory>
#include <vector>

namespace zv::host {

/// A text without case and accents, for comparing.
QString plainLetters(QStringView text);
/// The words of a search, as plainLetters().
inline QStringList searchWords(QStringView text)
{
    return plainLetters(text).split(u' ', Qt::SkipEmptyParts);
}

/// Which rows of a list a person wants to see, and in which order.
struct Wish {
    int column = -1; ///< By which they are sorted; -1: as they were read.
    bool descending = false;
    QStringList words = {};     ///< As plainLetters(); a row is found if it holds each somewhere.
    int progress = -1;          ///< Column whose rows that are not whole are counted; -1 for none.
    std::vector<int> gone = {}; ///< Numbers of rows that are deleted since they were read, sorted.
    bool hidesWhole = false; ///< Hides rows that are whole there, and whose last column has nothing to tell.
};

using RowNumbers = std::vector<int>; ///< Rows as RowLetters counts them.

/// A list as it was wished for.
struct Arrangement {
    Wish wish;
    std::shared_ptr<const RowNumbers> sorted; ///< All rows, the smallest first.
    std::shared_ptr<const RowNumbers> shown;  ///< The rows to see, in their order.
    int found = 0;                            ///< Rows that have the words.
    int lacking = 0;                          ///< Those of them that are not whole.
};

/// Arranges rows: blank texts before numbers, numbers by size, then words by the alphabet, without regard to
/// case. `before` is how the first of the same rows were arranged, or nullptr: what of it still holds is not
/// done again. Runs in any thread; nullptr if `stop` was set meanwhile.
std::shared_ptr<const Arrangement> arranged(const RowLetters& rows, const Wish& wish,
                                            const Arrangement* before, const std::atomic<bool>& stop);

} // namespace zv::host
