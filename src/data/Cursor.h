#pragma once

#include "data/Connection.h"
#include "data/DataError.h"

#include <deque>
#include <functional>
#include <optional>

namespace zv {

/// The rows of a running statement, as an engine gives them. It holds the present row and the next, so that a
/// result of one row is over at once and what it used is free.
class Cursor {
public:
    /// A field; empty if it holds bytes, which nothing here can take.
    using Field = std::optional<Value>;
    using Row = std::vector<Field>;

    Cursor() = default;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;
    virtual ~Cursor() = default;

    const std::vector<String>& names() const { return names_; }
    /// The present row; none past the last.
    const Row* row() const { return rows_.empty() ? nullptr : &rows_.front(); }
    bool isOnFirst() const { return passed_ == 0; }
    /// Whether the statement may run again: it only reads.
    virtual bool onlyReads() const = 0;
    /// On to the next row, of which a failure may stand in the way.
    void advance();
    /// Reads all rows that are left, so that what the engine keeps for them is free.
    void takeAll();

protected:
    /// The engine's next row; false past the last. A failure is a DataError.
    virtual bool read(Row& row) = 0;
    /// Nothing more will be read.
    virtual void finish() = 0;
    /// Runs the statement up to its first rows. What a statement writes is on disk only when its last row was
    /// read.
    void begin();
    bool isOver() const { return over_; }

    std::vector<String> names_; ///< To be known once the first row was read.

private:
    void fetch();

    std::deque<Row> rows_;
    std::optional<DataError> failure_; ///< Met behind the rows read so far.
    std::uint64_t passed_ = 0;
    bool over_ = false;
};

/// A recordset over a cursor, or a closed one over none. `again` runs the statement anew for MoveFirst, and
/// keeps alive what the cursor reads from.
RecordsetPtr recordsetOf(String statement, std::unique_ptr<Cursor> cursor,
                         std::function<std::unique_ptr<Cursor>(StringView)> again);

/// A whole number of a row: a Long where it is one.
Value wholeNumber(std::int64_t number);

/// Fails with otherData if the statement holds a unit that a database would not give back as it was.
void refuseUnstorable(StringView statement);

} // namespace zv
