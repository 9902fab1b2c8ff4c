#pragma once

#include "care/joins/JoinMoves.h"
#include "data/Transaction.h"

namespace zv::care {

/// Record of a join, in a table of the deleted-records database, where also the number of the row that went
/// is kept from being given again.
struct JoinRecord {
    Long number = 0;
    bool done = false; ///< Otherwise only begun.
    Pair pair = {};
    String name = {};   ///< Of the row that goes.
    String moment = {}; ///< UTC.
    Opening by = {};
    bool reserved = false;     ///< The number of the row that goes was put into the deleted-records database.
    history::Fields gone = {}; ///< The row that goes, whole.
    std::vector<Move> live = {};    ///< In the live database.
    Long forgotten = 0;             ///< Rows that it kept whole, and that were erased for data protection.
    std::vector<Move> deleted = {}; ///< In the deleted-records one; known when it is done.
};

/// The records, the newest first; with `number`, that one. None where the table is not there yet.
std::vector<JoinRecord> joinRecords(Connection& borrado, Long number = 0);

/// Writes one as begun, and reserves the number of the row that goes, in one transaction; gives its number.
Long begin(Connection& borrado, DdlStyle style, JoinRecord record);
/// Notes within a transaction that it is done, with what was moved in the deleted-records database.
void end(Connection& borrado, Long number, const std::vector<Move>& deleted);
/// Removes it, but for its number, and the reservation.
void drop(Connection& borrado, const JoinRecord& record);
/// Exchanges one stored text for another in what a record keeps, as when an enciphered one gets another key.
void replaceKept(Connection& borrado, Long number, StringView text, StringView with);
/// Erases the rows that records keep whole and that are about a row, as a pupil's ratings, or that are from
/// before a moment; without `forgets` it only counts them. Gives their number. Undoing the join does not
/// bring them back.
Long keptAbout(Connection& borrado, const schema::Table& table, Long key, bool forgets);
Long keptBefore(Connection& borrado, StringView moment, bool forgets);
/// Whether of the row that goes the deleted-records database has nothing but the number.
bool isBare(Connection& borrado, const Pair& pair);

/// A transaction that begins as a writer's: with SQLite a reader's may not become one where another station
/// has written meanwhile.
Transaction writing(Connection& base, DdlStyle style);

} // namespace zv::care
