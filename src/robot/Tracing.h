#pragma once

#include "data/Connection.h"
#include "runtime/CreateObject.h"

#include <functional>
#include <list>

namespace zv {

/// What is traced of the module's use of its live database and of the suite's helper object, and which
/// statements are made to fail.
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

/// A connection that shows each statement and lets pending failures happen before it passes the statement on.
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
/// not traced.
ObjectFactory tracedApi(ObjectFactory inner, Tracing& tracing);

} // namespace zv
