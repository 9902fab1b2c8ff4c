#pragma once

#include "runtime/String.h"

#include <compare>
#include <concepts>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

namespace zv {

using Byte = std::uint8_t;
using Integer = std::int16_t;
using Long = std::int32_t;
using Single = float;
using Double = double;

/// Fixed-point number with four decimals.
struct Currency {
    std::int64_t tenThousandths = 0;
    auto operator<=>(const Currency&) const = default;
};

class Object;
/// Reference-counted, late-bound object; nullptr is "no object".
using ObjectPtr = std::shared_ptr<Object>;
/// Array of 32-bit numbers, passed by reference: shared, not copied.
using LongArray = std::shared_ptr<std::vector<Long>>;

struct Empty {
    bool operator==(const Empty&) const = default;
};
struct Null {
    bool operator==(const Null&) const = default;
};

class Value;
using ValueData = std::variant<Empty, Null, bool, Byte, Integer, Long, Single, Double, Currency, String,
                               ObjectPtr, LongArray>;

/// Types that convert to a Value implicitly. Pointers are excluded: they would convert to a truth value.
template <class T>
concept Storable =
    !std::same_as<std::remove_cvref_t<T>, Value> && !std::is_pointer_v<std::remove_cvref_t<T>> &&
    !std::is_array_v<std::remove_cvref_t<T>> && std::constructible_from<ValueData, T>;
template <class T>
concept ObjectClass = std::derived_from<T, Object>;

/// Variant type: arguments and results of late-bound calls, and the fields of rows.
class Value {
public:
    using Data = ValueData;

    Value() = default;
    template <Storable T>
    Value(T&& data) : data_(std::forward<T>(data))
    {}
    Value(StringView text) : data_(String(text)) {}
    Value(const char16_t* text) : data_(String(text)) {}
    template <ObjectClass T>
    Value(std::shared_ptr<T> object) : data_(ObjectPtr(std::move(object)))
    {}

    bool isEmpty() const { return std::holds_alternative<Empty>(data_); }
    bool isNull() const { return std::holds_alternative<Null>(data_); }
    const Data& data() const& { return data_; }
    Data data() && { return std::move(data_); }
    template <class T>
    const T* as() const
    {
        return std::get_if<T>(&data_);
    }

private:
    Data data_;
};

} // namespace zv
