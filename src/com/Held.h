#pragma once

#include <zvconfiguracion/automation.h>

#include <cstring>
#include <utility>

namespace zv::com {

/// A counted reference to an object behind the surface, ours or a host's.
template <class Interface>
class Held {
public:
    Held() = default;
    /// Takes over a reference that the caller has.
    explicit Held(Interface* object) : object_(object) {}
    Held(const Held& other) : Held(counted(other.object_)) {}
    Held(Held&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Held& operator=(Held other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Held() { zv_release(object_); }

    /// Shares an object that someone else holds.
    static Held sharing(Interface* object) { return Held(counted(object)); }

    Interface* get() const { return object_; }
    /// Where a function puts a reference for us.
    Interface** place() { return &object_; }
    /// Hands the reference to the caller.
    Interface* detach() { return std::exchange(object_, nullptr); }
    explicit operator bool() const { return object_ != nullptr; }

private:
    static Interface* counted(Interface* object)
    {
        if (object != nullptr) {
            auto* unknown = reinterpret_cast<ZvUnknown*>(object);
            unknown->vtbl->AddRef(unknown);
        }
        return object;
    }
    Interface* object_ = nullptr;
};

inline bool operator==(const ZvGuid& a, const ZvGuid& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

} // namespace zv::com
