#pragma once

#include "data/Connection.h"
#include "runtime/CreateObject.h"

#include <functional>
#include <list>

namespace zv {

/// Settings of the tracing decorators below: which calls are traced, and which statements fail (fault
/// injection).
struct Tracing {
    struct Failure {
        std::int32_t number = 0;
        String pattern; ///< Matched anywhere in a statement, without regard to case.
        Long times = 1;
    };
    bool sql = false;
    bool api = false;
    std::list<Failure> failures; ///< The oldest first.
    std::function<void(StringView)> observe;
};

/// Decorator of a connection: traces each statement, and throws a pending failure instead of forwarding it.
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

/// Factory of decorators that trace each call by name and forward it to an object of the given factory. A
/// traced connection among the arguments is unwrapped, so that only the module's own statements are traced.
ObjectFactory tracedApi(ObjectFactory inner, Tracing& tracing);

} // namespace zv
