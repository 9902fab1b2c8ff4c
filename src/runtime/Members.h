#pragma once

#include "runtime/Object.h"

#include <functional>
#include <optional>
#include <tuple>
#include <utility>

namespace zv {

/// An argument on its way to a parameter of type P: it is converted by that type and kept for the call.
template <class P>
class Parameter {
public:
    static constexpr bool optional = false;
    explicit Parameter(const Arguments& arguments, std::size_t place)
        : kept_(valueTo<std::remove_cvref_t<P>>(arguments[place]))
    {}
    operator const std::remove_cvref_t<P>&() const { return kept_; }

private:
    std::remove_cvref_t<P> kept_;
};
template <>
class Parameter<StringView> : public Parameter<String> {
public:
    using Parameter<String>::Parameter;
    operator StringView() const { return operator const String&(); }
};
/// By reference: what the callee leaves there goes back to the caller.
template <>
class Parameter<String&> {
public:
    static constexpr bool optional = false;
    explicit Parameter(const Arguments& arguments, std::size_t place) : kept_(CStr(arguments[place])) {}
    operator String&() { return kept_; }
    void writeBack(Value& argument) { argument = std::move(kept_); }

private:
    String kept_;
};
template <>
class Parameter<const std::vector<Long>&> : public Parameter<LongArray> {
public:
    using Parameter<LongArray>::Parameter;
    operator const std::vector<Long>&() const { return *operator const LongArray&(); }
};
/// An argument that callers may leave away, behind those that they may not.
template <class T>
class Parameter<const std::optional<T>&> {
public:
    static constexpr bool optional = true;
    explicit Parameter(const Arguments& arguments, std::size_t place)
    {
        if (place < arguments.size())
            kept_ = valueTo<T>(arguments[place]);
    }
    operator const std::optional<T>&() const { return kept_; }

private:
    std::optional<T> kept_;
};

/// What member pointers tell of late-bound calls.
namespace binding {

/// An object that is given by reference is not counted.
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

/// Converts the arguments from left to right, then calls.
template <auto F, class T, class... P, std::size_t... I>
Value run(Object& object, Arguments& arguments, std::index_sequence<I...> /*places*/)
{
    auto& self = static_cast<T&>(object);
    std::tuple<Parameter<P>...> parameters{Parameter<P>(arguments, I)...};
    Value result;
    if constexpr (std::is_void_v<decltype(std::invoke(F, self, std::get<I>(parameters)...))>)
        std::invoke(F, self, std::get<I>(parameters)...);
    else
        result = wrapped(std::invoke(F, self, std::get<I>(parameters)...));
    const auto writeBack = [](auto& parameter, Value& argument) {
        if constexpr (requires { parameter.writeBack(argument); })
            parameter.writeBack(argument);
    };
    if constexpr ((... || std::same_as<P, String&>))
        (writeBack(std::get<I>(parameters), arguments[I]), ...);
    return result;
}

template <auto F, class T, class... P>
constexpr Member::Call call()
{
    return {(0 + ... + (Parameter<P>::optional ? 0 : 1)), sizeof...(P),
            [](Object& self, Arguments& arguments) {
                return run<F, T, P...>(self, arguments, std::index_sequence_for<P...>());
            }};
}
/// A member function, or a function beside the class that takes the object first.
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
/// A data member is read, or written with a value that is converted to its type.
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

/// A member that is called: `method<&Connection::Execute>(u"Execute")`.
template <auto F>
constexpr Member method(StringView name)
{
    return {name, binding::callOf<F>(F), {}, true};
}
/// A member that is read, and written where there is something to write it with. A getter may take indices;
/// the setter takes them too, and the new value last.
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
/// A data member, which is read and written as it stands.
template <auto M>
constexpr Member field(StringView name)
{
    return {name, binding::callOf<M>(M), binding::letOf<M>(M), false};
}

} // namespace zv
