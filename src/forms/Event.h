#pragma once

#include <functional>
#include <utility>

namespace zv {

/// Event of a control or form, with at most one handler (callback). Raising it without one does nothing; a
/// failure of the handler propagates to whoever raised it.
template <class... Args>
class Event {
public:
    void bind(std::function<void(Args...)> handler) { handler_ = std::move(handler); }
    bool bound() const { return static_cast<bool>(handler_); }
    void raise(Args... args) const
    {
        if (handler_)
            handler_(args...);
    }

private:
    std::function<void(Args...)> handler_;
};

} // namespace zv
