#pragma once

#include "data/Connection.h"

#include <functional>

namespace zv {

/// Decorator of a connection: a callback gets each statement before it is forwarded.
class WatchedConnection final : public ConnectionDecorator {
public:
    WatchedConnection(ConnectionPtr inner, std::function<void(StringView)> tell)
        : ConnectionDecorator(std::move(inner)), tell_(std::move(tell))
    {}
    RecordsetPtr Execute(StringView statement) override
    {
        tell_(statement);
        return inner()->Execute(statement);
    }

private:
    std::function<void(StringView)> tell_;
};

/// Decorates all three databases of a school.
inline School watched(const School& school, const std::function<void(StringView)>& tell)
{
    return {std::make_shared<WatchedConnection>(school.centro, tell),
            std::make_shared<WatchedConnection>(school.borrado, tell),
            std::make_shared<WatchedConnection>(school.entrada, tell)};
}

} // namespace zv
