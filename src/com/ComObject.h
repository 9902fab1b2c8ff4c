#pragma once

#include "com/Failure.h"
#include "com/Held.h"
#include "runtime/Object.h"

#include <atomic>
#include <vector>

namespace zv::com {

class ComObject;

/// Type-erased entry of a vtable.
using AnyFunction = void (*)();
using FunctionTable = std::vector<AnyFunction>;

/// A function as a table holds it. Only one that is called as hosts call them can be there.
template <class Result, class... Arguments>
AnyFunction slot(Result(ZV_CALL* function)(Arguments...))
{
    return reinterpret_cast<AnyFunction>(function);
}

/// Interface pointer's target, which hosts hold: the vtable pointer first, as the binary interface demands.
struct Face {
    const AnyFunction* table;
    ComObject* object;
};

/// Library-wide count of live objects and server locks; the library may be unloaded at 0.
std::atomic<int>& inUse();

/// Reference-counted base class of our objects in the binary interface. Created with one reference; the last
/// release destroys it.
class ComObject {
public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;
    virtual ~ComObject();

    template <class Interface>
    Interface* face()
    {
        return reinterpret_cast<Interface*>(&face_);
    }
    std::uint32_t addRef() { return ++references_; }
    std::uint32_t release();
    /// For QueryInterface: whether it implements the interface (IUnknown aside).
    virtual bool answers(const ZvGuid& interface) const = 0;

protected:
    /// The table outlives the object.
    explicit ComObject(const FunctionTable& table);

private:
    Face face_;
    std::atomic<std::uint32_t> references_{1};
};

/// RAII guard in every vtable function: the object behind the interface pointer, referenced for the duration
/// of the call, since a re-entrant one may release the host's last reference.
template <class Object>
class Self {
public:
    explicit Self(Face* face) : object_(static_cast<Object*>(face->object)) { object_->addRef(); }
    Self(const Self&) = delete;
    Self& operator=(const Self&) = delete;
    ~Self() { object_->release(); }
    Object* operator->() const { return object_; }

private:
    Object* object_;
};

/// Vtable of IUnknown: the first three entries of every table.
FunctionTable unknownFunctions();

/// Exception barrier: no exception crosses the binary interface. `told` maps number and text to the result.
/// An unforeseen one is not ZV_E_FAIL: from a connection that means a taken key, and the insert would be
/// retried.
template <class Action, class Told>
ZvResult guarded(Action&& action, Told&& told)
try {
    try {
        action();
        return ZV_OK;
    } catch (const Refusal& refusal) {
        return refusal.result;
    } catch (const RuntimeError& error) {
        return told(error.number(), error.description());
    } catch (const std::bad_alloc&) {
        return ZV_E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        return told(ZV_E_UNEXPECTED, fromUtf8(error.what()));
    }
} catch (...) {
    return ZV_E_UNEXPECTED;
}
template <class Action>
ZvResult guarded(Action&& action)
{
    return guarded(action, [](std::int32_t number, const String&) { return resultOf(number); });
}

} // namespace zv::com
