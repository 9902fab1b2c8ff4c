#pragma once

#include "data/DataError.h"
#include "runtime/Object.h"

namespace zv {

/// Forward-only rows of a statement. Late-bound: EOF, MoveNext, MoveFirst, Fields(name), State, Close. On a
/// closed one EOF, Fields and MoveNext fail with 3704; on no row with 3021; an unknown field with 3265.
class Recordset : public Object {
public:
    /// Past the last row. (EOF itself is a macro of the C library.)
    virtual bool Eof() = 0;
    virtual void MoveNext() = 0;
    virtual void MoveFirst() = 0;
    /// The field's value in the current row, by name without regard to case.
    virtual Value Fields(StringView name) = 0;
    /// Values of the current row in the statement's order.
    virtual std::vector<Value> row() = 0;
    /// 1 open, 0 closed.
    virtual Long State() const = 0;
    /// Fails with 3704 if it is closed already.
    virtual void Close() = 0;

    StringView TypeName() const override { return u"Recordset"; }

protected:
    const Member* memberNamed(StringView name) const override;
};
using RecordsetPtr = std::shared_ptr<Recordset>;

/// Name and version of a database engine.
struct EngineInfo {
    String name;
    String version;
};

/// Port to a database (dependency inversion). A statement that returned is committed and on disk; a failure
/// is a DataError. Late-bound: Execute.
class Connection : public Object {
public:
    /// Runs one statement in the dialogs' dialect. One that gives no rows comes back as a closed recordset.
    virtual RecordsetPtr Execute(StringView statement) = 0;
    /// Runs one statement in the engine's own SQL, untranslated.
    virtual RecordsetPtr executeNative(StringView statement) = 0;
    virtual EngineInfo engine() = 0;

    StringView TypeName() const override { return u"Connection"; }

protected:
    const Member* memberNamed(StringView name) const override;
};
using ConnectionPtr = std::shared_ptr<Connection>;

/// The three databases of a school.
struct School {
    ConnectionPtr centro;  ///< The live database.
    ConnectionPtr borrado; ///< Deleted records, in the live database's tables.
    ConnectionPtr entrada; ///< The suite's entry database.
};

} // namespace zv
