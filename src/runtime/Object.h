#pragma once

#include "runtime/Convert.h"
#include "runtime/Value.h"

#include <functional>
#include <map>
#include <span>

namespace zv {

/// How a member is reached.
enum class Access { get, let, call };

/// Arguments of a late-bound call, in order; a callee may write to them (by-reference arguments).
using Arguments = std::vector<Value>;

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
    /// of that name, 450 if the number of arguments is wrong.
    virtual Value invoke(StringView member, Access access, Arguments& arguments) = 0;
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

/// An argument of a call; one that was not given fails with 450.
const Value& argument(const Arguments& arguments, std::size_t position);

/// A counted reference to an object whose life is not counted (a control, a form): it never owns it.
ObjectPtr uncounted(Object& object);

/// Members of a class by name, shared by all its instances.
template <class T>
class MemberTable {
public:
    using Getter = std::function<Value(T&, const Arguments&)>;
    using Setter = std::function<void(T&, const Arguments&)>; ///< The last argument is the new value.
    using Method = std::function<Value(T&, Arguments&)>;

    MemberTable& property(StringView name, Getter getter, Setter setter = nullptr)
    {
        members_[String(name)] = {std::move(getter), std::move(setter), nullptr};
        return *this;
    }
    /// A plain data member, converted on writing by `convert`, one of the C... functions.
    template <class M, class Convert>
    MemberTable& field(StringView name, M T::*member, Convert convert)
    {
        return property(
            name, [member](T& self, const Arguments&) { return Value(self.*member); },
            [member, convert](T& self, const Arguments& arguments) {
                self.*member = convert(arguments.back());
            });
    }
    MemberTable& method(StringView name, Method method)
    {
        members_[String(name)] = {nullptr, nullptr, std::move(method)};
        return *this;
    }
    bool has(StringView name) const { return members_.find(name) != members_.end(); }
    Value invoke(T& self, StringView name, Access access, Arguments& arguments) const
    {
        const auto found = members_.find(name);
        if (found == members_.end())
            fail(failure::memberMissing, name);
        const Entry& entry = found->second;
        if (access == Access::let) {
            if (!entry.set)
                fail(entry.get ? failure::readOnlyProperty : failure::memberMissing, name);
            if (arguments.empty())
                fail(failure::argumentCount, name);
            entry.set(self, arguments);
            return {};
        }
        if (entry.call)
            return entry.call(self, arguments);
        if (!entry.get)
            fail(failure::memberMissing, name);
        return entry.get(self, arguments);
    }

private:
    struct Entry {
        Getter get;
        Setter set;
        Method call;
    };
    std::map<String, Entry, NameLess> members_;
};

} // namespace zv
