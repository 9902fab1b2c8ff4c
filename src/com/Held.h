#pragma once

#include <zvconfiguracion/automation.h>

#include <cstring>
#include <utility>

namespace zv::com {

/// Smart pointer to a reference-counted object of the binary interface, ours or a host's: copies add a
/// reference, the destructor releases it, so that none leaks.
template <class Interface>
class Held {
public:
    Held() = default;
    /// Adopts a reference of the caller's.
    explicit Held(Interface* object) : object_(object) {}
    Held(const Held& other) : Held(counted(other.object_)) {}
    Held(Held&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Held& operator=(Held other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Held() { zv_release(object_); }

    /// Adds a reference to an object that someone else owns.
    static Held sharing(Interface* object) { return Held(counted(object)); }

    Interface* get() const { return object_; }
    /// Out parameter through which a function gives us a reference.
    Interface** place() { return &object_; }
    /// Transfers ownership to the caller.
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
