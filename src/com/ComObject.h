#pragma once

#include "com/Failure.h"
#include "com/Held.h"
#include "runtime/Object.h"

#include <atomic>
#include <span>
#include <vector>

namespace zv::com {

class ComObject;

/// A function of a table, whatever its arguments.
using AnyFunction = void (*)();
using FunctionTable = std::vector<AnyFunction>;

/// A function as a table holds it. Only one that is called as hosts call them can be there.
template <class Result, class... Arguments>
AnyFunction slot(Result(ZV_CALL* function)(Arguments...))
{
    return reinterpret_cast<AnyFunction>(function);
}

/// What a host holds of an object of ours: its table of functions comes first.
struct Face {
    const AnyFunction* table;
    ComObject* object;
};

/// Objects and locks that keep this library in memory.
std::atomic<int>& inUse();

/// An object of ours that a host counts. It is made with one reference and ends with the last.
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
    /// Whether this object has the interface, beside the unknown one.
    virtual bool answers(const ZvGuid& interface) const = 0;

protected:
    /// The table outlives the object.
    explicit ComObject(const FunctionTable& table);

private:
    Face face_;
    std::atomic<std::uint32_t> references_{1};
};

/// The object behind a face, kept alive while one of its functions runs.
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

/// The first three functions of every table.
FunctionTable unknownFunctions();

/// Runs what may fail; nothing that was thrown goes on to the host. `told` gets number and text, and gives
/// the result. What nobody foresaw is not ZV_E_FAIL: for a connection that means a key that is taken, and the
/// insert is tried again.
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
