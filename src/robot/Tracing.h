#pragma once

#include "data/Connection.h"
#include "runtime/CreateObject.h"

#include <functional>
#include <list>

namespace zv {

/// Settings of the tracing decorators below: which calls are traced, and which statements and calls fail
/// (fault injection).
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

/// Decorator of a connection: traces each statement, and throws a pending failure instead of forwarding it;
/// its recordsets trace that they are closed.
class TracedConnection final : public ConnectionDecorator {
public:
    TracedConnection(ConnectionPtr inner, Tracing& tracing)
        : ConnectionDecorator(std::move(inner)), tracing_(tracing)
    {}

    RecordsetPtr Execute(StringView statement) override;

private:
    Tracing& tracing_;
};

/// Factory of decorators that trace each call by name and forward it to an object of the given factory, or
/// throw a pending failure (also on creation). A traced connection among the arguments is unwrapped, so that
/// only the module's own statements are traced.
ObjectFactory tracedApi(ObjectFactory inner, Tracing& tracing);

} // namespace zv
