#pragma once

#include "data/DataError.h"
#include "runtime/Object.h"

namespace zv {

/// Rows of a statement, read forward. By name: EOF, MoveNext, MoveFirst, Fields(name), State, Close.
/// On a closed one EOF, Fields and MoveNext fail with 3704; on no row with 3021; an unknown field with 3265.
class Recordset : public Object {
public:
    /// Past the last row. (The C library takes the usual name for itself.)
    virtual bool Eof() = 0;
    virtual void MoveNext() = 0;
    virtual void MoveFirst() = 0;
    /// The field's value in the present row; names match without regard to case.
    virtual Value Fields(StringView name) = 0;
    /// Values of the present row in the statement's order.
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

/// A connection to a database. A statement that returned is on disk; a failure is a DataError.
/// By name: Execute.
class Connection : public Object {
public:
    /// Runs one statement as the dialogs write it. One that gives no rows comes back as a closed recordset.
    virtual RecordsetPtr Execute(StringView statement) = 0;
    /// Runs one statement in the engine's own SQL.
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
    ConnectionPtr borrado; ///< Deleted records: the live database's tables.
    ConnectionPtr entrada; ///< The suite's entry database.
};

} // namespace zv
