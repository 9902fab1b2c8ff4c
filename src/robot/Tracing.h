#pragma once

#include "data/Connection.h"
#include "runtime/CreateObject.h"

#include <functional>
#include <list>

namespace zv {

/// What is traced of the module's use of its live database and of the suite's helper object, and which
/// statements and calls are made to fail.
struct Tracing {
    /// Fault injection: the next calls that match fail.
    struct Failure {
        std::int32_t number = 0;
        String pattern; ///< Part of a statement, or an operation's name; without regard to case.
        Long times = 1;
    };
    using Failures = std::list<Failure>; ///< The oldest first.
    bool sql = false;
    bool api = false;
    bool steps = false;   ///< What a dialog does beside these, and shows nobody.
    Failures failures;    ///< Of statements.
    Failures apiFailures; ///< Of the helper object's operations; `creation` is its creation.
    std::function<void(StringView)> observe;
    std::function<void(StringView)> observeStep;

    static constexpr StringView creation = u"CreateObject";

    void step(StringView what) const
    {
        if (steps)
            observeStep(what);
    }
};

/// A connection that shows each statement and lets pending failures happen before it passes the statement on;
/// its recordsets show that they are closed.
class TracedConnection final : public Connection {
public:
    TracedConnection(ConnectionPtr inner, Tracing& tracing) : inner_(std::move(inner)), tracing_(tracing) {}
    const ConnectionPtr& inner() const { return inner_; }

    RecordsetPtr Execute(StringView statement) override;
    RecordsetPtr executeNative(StringView statement) override { return inner_->executeNative(statement); }
    EngineInfo engine() override { return inner_->engine(); }

private:
    ConnectionPtr inner_;
    Tracing& tracing_;
};

/// A class whose objects show each call and pass it on to one of the given class, with connections that are
/// not traced. Pending failures happen instead, also of the creation.
ObjectFactory tracedApi(ObjectFactory inner, Tracing& tracing);

} // namespace zv
