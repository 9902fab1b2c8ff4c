#pragma once

#include "runtime/Convert.h"
#include "runtime/Value.h"

#include <span>

namespace zv {

/// Kind of access to a member: property read, property write, method call.
enum class Access { get, let, call };

/// Arguments of a late-bound call, in order; a callee may write to them (by-reference arguments).
using Arguments = std::vector<Value>;

class Object;

/// Entry of a class's dispatch table, made from member pointers (runtime/Members.h).
struct Member {
    struct Call {
        std::uint8_t least = 0; ///< Arity: fewest arguments.
        std::uint8_t most = 0;  ///< Most arguments.
        Value (*run)(Object& self, Arguments& arguments) = nullptr;
    };
    StringView name;
    Call get; ///< Reads or calls.
    Call let; ///< Writes; its `run` is nullptr if the member is read only.
    bool isMethod = false;

    /// Copy that accepts and ignores surplus arguments, up to `most`.
    constexpr Member taking(std::uint8_t most) const
    {
        Member result = *this;
        result.get.most = most;
        return result;
    }
    /// Checks the arity and calls. `called` is the name as the caller spelt it, for the error text.
    Value invoke(Object& self, StringView called, Access access, Arguments& arguments) const;
};
/// Lookup without regard to case, or nullptr.
const Member* findMember(std::span<const Member> members, StringView name);

/// Late-bound object: its members are looked up by name at run time, without regard to case.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// Class name, such as "TextBox".
    virtual StringView TypeName() const = 0;
    /// Reads, writes (the new value is the last argument) or calls a member. Fails with 438 if there is none
    /// of that name, 383 if it is read only, 450 if the number of arguments is wrong.
    virtual Value invoke(StringView member, Access access, Arguments& arguments);

protected:
    /// Lookup in the class's dispatch table, or nullptr. The default is for classes without one, whose
    /// members are known only at run time: they override invoke().
    virtual const Member* memberNamed(StringView name) const;
};

/// Late-bound access; no object fails with 91.
Value get(Object& object, StringView member, Arguments arguments = {});
void let(Object& object, StringView member, Value value);
Value call(Object& object, StringView member, Arguments arguments = {});
Value get(const ObjectPtr& object, StringView member, Arguments arguments = {});
void let(const ObjectPtr& object, StringView member, Value value);
Value call(const ObjectPtr& object, StringView member, Arguments arguments = {});
/// Call with by-reference arguments.
Value callByReference(const ObjectPtr& object, StringView member, Arguments& arguments);

/// Non-owning shared_ptr to an object that is not reference-counted (a control, a form).
ObjectPtr uncounted(Object& object);

} // namespace zv
