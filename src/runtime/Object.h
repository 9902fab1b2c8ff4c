#pragma once

#include "runtime/Convert.h"
#include "runtime/Value.h"

#include <span>

namespace zv {

/// How a member is reached.
enum class Access { get, let, call };

/// Arguments of a late-bound call, in order; a callee may write to them (by-reference arguments).
using Arguments = std::vector<Value>;

class Object;

/// A name by which the objects of a class are reached; made of member pointers (runtime/Members.h).
struct Member {
    struct Call {
        std::uint8_t least = 0; ///< Arguments.
        std::uint8_t most = 0;
        Value (*run)(Object& self, Arguments& arguments) = nullptr;
    };
    StringView name;
    Call get; ///< Reads or calls.
    Call let; ///< Writes; none if the member is read only.
    bool isMethod = false;

    /// The same with a call that ignores what stands behind its parameters, up to so many arguments.
    constexpr Member taking(std::uint8_t most) const
    {
        Member result = *this;
        result.get.most = most;
        return result;
    }
    /// `called` is the name as the caller spelt it, for a failure.
    Value invoke(Object& self, StringView called, Access access, Arguments& arguments) const;
};
/// The member of that name, or nullptr.
const Member* findMember(std::span<const Member> members, StringView name);

/// An object reached by name at run time. Names are matched without regard to case.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// The kind's name, such as "TextBox".
    virtual StringView TypeName() const = 0;
    /// Reads, writes (the new value is the last argument) or calls a member. Fails with 438 if there is none
    /// of that name, 383 if it is read only, 450 if the number of arguments is wrong.
    virtual Value invoke(StringView member, Access access, Arguments& arguments);

protected:
    /// The class's member of that name, or nullptr; of classes whose members are known only at run time none.
    virtual const Member* memberNamed(StringView name) const;
};

/// Late-bound use of an object; no object fails with 91.
Value get(Object& object, StringView member, Arguments arguments = {});
void let(Object& object, StringView member, Value value);
Value call(Object& object, StringView member, Arguments arguments = {});
Value get(const ObjectPtr& object, StringView member, Arguments arguments = {});
void let(const ObjectPtr& object, StringView member, Value value);
Value call(const ObjectPtr& object, StringView member, Arguments arguments = {});
/// Calls with arguments that the callee may change.
Value callByReference(const ObjectPtr& object, StringView member, Arguments& arguments);

/// A counted reference to an object whose life is not counted (a control, a form): it never owns it.
ObjectPtr uncounted(Object& object);

} // namespace zv
