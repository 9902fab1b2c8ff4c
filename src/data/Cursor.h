#pragma once

#include "data/Connection.h"
#include "data/DataError.h"

#include <deque>
#include <functional>
#include <optional>
#include <variant>

namespace zv {

/// Cursor of a running statement. It reads one row ahead, so that a result of one row is complete at once and
/// its handle is idle again.
class Cursor {
public:
    /// Binary data, for which there is no Value.
    struct Bytes {};
    /// A field as engines give it: whole numbers that a Long has no room for are Doubles.
    using Field = std::variant<Null, Long, Double, String, Bytes>;
    using Row = std::vector<Field>;

    Cursor() = default;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;
    virtual ~Cursor() = default;

    const std::vector<String>& names() const { return names_; }
    /// The current row; nullptr past the last.
    const Row* row() const { return rows_.empty() ? nullptr : &rows_.front(); }
    /// A field of the current row, which has to be there; Empty for bytes.
    Value value(std::size_t column) const { return valueOf(rows_.front().at(column)); }
    static Value valueOf(const Field& field);
    bool isOnFirst() const { return passed_ == 0; }
    /// Whether the statement only reads, so that it may be run again.
    virtual bool onlyReads() const = 0;
    /// Moves to the next row; rethrows the failure that the read-ahead met there.
    void advance();
    /// Buffers all remaining rows, so that the engine's resources are free.
    void takeAll();

protected:
    /// Reads the engine's next row over one that was passed, whose room may be used again; false past the
    /// last. A failure is a DataError.
    virtual bool read(Row& row) = 0;
    /// Releases the engine's resources: nothing more will be read.
    virtual void finish() = 0;
    /// Runs the statement up to its first rows; one that writes, to its last row, since only then it is
    /// committed.
    void begin();
    bool isOver() const { return over_; }

    std::vector<String> names_; ///< Filled by the time the first row was read.

private:
    void fetch();

    std::deque<Row> rows_;
    Row spare_;                        ///< Room of the row that was passed last, for the next one.
    std::optional<DataError> failure_; ///< Deferred failure of the read-ahead, behind the rows read so far.
    std::uint64_t passed_ = 0;
    bool over_ = false;
};

/// Recordset over a cursor; a closed one over nullptr. `again` re-runs the statement for MoveFirst, and keeps
/// alive what the cursor reads from.
RecordsetPtr recordsetOf(String statement, std::unique_ptr<Cursor> cursor,
                         std::function<std::unique_ptr<Cursor>(StringView)> again);

/// Converts a whole number: to a Long where it fits.
Cursor::Field wholeNumber(std::int64_t number);

/// Fails with otherData if the statement holds a 16-bit unit that a database would not store and return
/// unchanged.
void refuseUnstorable(StringView statement);
/// The text with U+FFFD in the place of each such unit.
String storable(String text);

} // namespace zv
