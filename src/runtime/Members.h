#pragma once

#include "runtime/Object.h"

#include <functional>
#include <optional>
#include <tuple>
#include <utility>

namespace zv {

/// Trait: the type to which an argument is converted (valueTo) and in which it is kept for the duration of
/// the call. A pointer type is dereferenced for the parameter; nullptr fails with 91.
template <class P>
struct Kept {
    using Type = std::remove_cvref_t<P>;
    static constexpr bool optional = false;
};
template <>
struct Kept<StringView> : Kept<String> {};
template <>
struct Kept<const std::vector<Long>&> : Kept<LongArray> {};
/// Optional parameter; only behind the mandatory ones.
template <class T>
struct Kept<const std::optional<T>&> {
    using Type = std::optional<T>;
    static constexpr bool optional = true;
};

/// Late-bound calls deduced from member pointers (type erasure): arity, conversions, by-reference arguments.
namespace binding {

/// Converts a result to a Value; an object returned by reference becomes an uncounted() one.
template <class R>
Value wrapped(R&& given)
{
    if constexpr (std::derived_from<std::remove_cvref_t<R>, Object>)
        return uncounted(given);
    else if constexpr (std::same_as<R, std::size_t>)
        return static_cast<Long>(given);
    else
        return Value(std::forward<R>(given));
}

template <class P>
class Parameter {
    using Type = typename Kept<P>::Type;

public:
    Parameter(const Arguments& arguments, std::size_t place) : kept_(converted(arguments, place)) {}
    P given()
    {
        if constexpr (std::is_convertible_v<Type&, P>)
            return kept_;
        else {
            if (!kept_)
                fail(failure::noObject);
            return *kept_;
        }
    }
    /// Copies a by-reference argument back to the caller.
    void writeBack(Value& argument)
    {
        if constexpr (std::same_as<P, String&>)
            argument = std::move(kept_);
    }

private:
    static Type converted(const Arguments& arguments, std::size_t place)
    {
        if constexpr (!Kept<P>::optional)
            return valueTo<Type>(arguments[place]);
        else
            return place < arguments.size() ? Type(valueTo<typename Type::value_type>(arguments[place]))
                                            : Type();
    }
    Type kept_;
};

/// Converts the arguments from left to right, then calls.
template <auto F, class T, class... P, std::size_t... I>
Value run(Object& object, Arguments& arguments, std::index_sequence<I...> /*places*/)
{
    std::tuple<Parameter<P>...> parameters{Parameter<P>(arguments, I)...};
    const auto called = [&]() -> decltype(auto) {
        return std::invoke(F, static_cast<T&>(object), std::get<I>(parameters).given()...);
    };
    Value result;
    if constexpr (std::is_void_v<decltype(called())>)
        called();
    else
        result = wrapped(called());
    if constexpr ((... || std::same_as<P, String&>))
        (std::get<I>(parameters).writeBack(arguments[I]), ...);
    return result;
}

template <auto F, class T, class... P>
constexpr Member::Call call()
{
    return {(0 + ... + (Kept<P>::optional ? 0 : 1)), sizeof...(P), [](Object& self, Arguments& arguments) {
                return run<F, T, P...>(self, arguments, std::index_sequence_for<P...>());
            }};
}
/// A member function, or a free function that takes the object first.
template <auto F, class R, class T, class... P>
constexpr Member::Call callOf(R (T::* /*function*/)(P...))
{
    return call<F, T, P...>();
}
template <auto F, class R, class T, class... P>
constexpr Member::Call callOf(R (T::* /*function*/)(P...) const)
{
    return call<F, T, P...>();
}
template <auto F, class R, class T, class... P>
constexpr Member::Call callOf(R (* /*function*/)(T&, P...))
{
    return call<F, T, P...>();
}
/// Getter and setter of a data member; the setter converts to its type.
template <auto M, class D, class T>
constexpr Member::Call callOf(D T::* /*member*/) requires(!std::is_function_v<D>)
{
    return call<M, T>();
}
template <auto M, class D, class T>
constexpr Member::Call letOf(D T::* /*member*/)
{
    return call<[](T& self, const D& value) { self.*M = value; }, T, const D&>();
}

} // namespace binding

/// A method: `method<&Connection::Execute>(u"Execute")`.
template <auto F>
constexpr Member method(StringView name)
{
    return {name, binding::callOf<F>(F), {}, true};
}
/// A property; read only without a setter. A getter may take indices; the setter takes the same ones, and the
/// new value last.
template <auto Get>
constexpr Member property(StringView name)
{
    return {name, binding::callOf<Get>(Get), {}, false};
}
template <auto Get, auto Let>
constexpr Member property(StringView name)
{
    return {name, binding::callOf<Get>(Get), binding::callOf<Let>(Let), false};
}
/// A data member as a property.
template <auto M>
constexpr Member field(StringView name)
{
    return {name, binding::callOf<M>(M), binding::letOf<M>(M), false};
}

} // namespace zv
