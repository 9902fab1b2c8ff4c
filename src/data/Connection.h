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

/// A dialog that a person has before him: what a connection with a history notes beside each row.
struct Opening {
    String dialog = {};   ///< Name of its form; "" for an act of the host itself.
    Long row = 0;         ///< The session's key.
    bool creates = false; ///< It is to make a new row.
    Integer user = 0;
    String userName = {};
    String station = {}; ///< Identity of the process.
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

    /// Observer callbacks of the dialogs above; a connection without a history takes no notice. Openings
    /// nest.
    virtual void dialogOpened(const Opening& /*opening*/) {}
    virtual void dialogClosed() {}
    /// No routine of a dialog runs any more: what it saved is saved.
    virtual void dialogAtRest() {}

    StringView TypeName() const override { return u"Connection"; }

protected:
    const Member* memberNamed(StringView name) const override;
};
using ConnectionPtr = std::shared_ptr<Connection>;

/// Decorator of a connection: forwards everything.
class ConnectionDecorator : public Connection {
public:
    explicit ConnectionDecorator(ConnectionPtr inner) : inner_(std::move(inner)) {}
    const ConnectionPtr& inner() const { return inner_; }

    RecordsetPtr Execute(StringView statement) override { return inner_->Execute(statement); }
    RecordsetPtr executeNative(StringView statement) override { return inner_->executeNative(statement); }
    EngineInfo engine() override { return inner_->engine(); }
    void dialogOpened(const Opening& opening) override { inner_->dialogOpened(opening); }
    void dialogClosed() override { inner_->dialogClosed(); }
    void dialogAtRest() override { inner_->dialogAtRest(); }

private:
    ConnectionPtr inner_;
};

/// RAII guard of work that no dialog does: for a history it is one act.
class ActGuard {
public:
    ActGuard(Connection& centro, const Opening& opening) : centro_(centro) { centro_.dialogOpened(opening); }
    ActGuard(const ActGuard&) = delete;
    ActGuard& operator=(const ActGuard&) = delete;
    ~ActGuard() { centro_.dialogClosed(); }

private:
    Connection& centro_;
};

/// The three databases of a school.
struct School {
    ConnectionPtr centro;  ///< The live database.
    ConnectionPtr borrado; ///< Deleted records, in the live database's tables.
    ConnectionPtr entrada; ///< The suite's entry database.
};

} // namespace zv
