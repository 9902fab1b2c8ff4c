#pragma once

#include "runtime/Value.h"

#include <zvconfiguracion/automation.h>

namespace zv::com {

/// RAII owner of a variant.
class Variant {
public:
    Variant() = default;
    explicit Variant(const Value& value);
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    Variant(Variant&& other) noexcept : variant_(other.detach()) {}
    Variant& operator=(Variant&&) = delete;
    ~Variant() { zv_variant_clear(&variant_); }

    ZvVariant& raw() { return variant_; }
    /// Transfers ownership to the caller.
    ZvVariant detach()
    {
        const ZvVariant result = variant_;
        variant_ = {};
        return result;
    }
    /// By-reference variant to this one's value, for a callee to change; a plain copy if it has no value.
    ZvVariant reference();

private:
    ZvVariant variant_{};
};

/// Converts a variant, dereferenced if by reference; an omitted argument is Empty. Fails with 13 for a type
/// that has no counterpart.
Value valueOf(const ZvVariant& variant);
/// Whether it is the placeholder of an omitted argument. Fails with 13 like valueOf.
bool isLeftOut(const ZvVariant& variant);

/// Stores through a by-reference variant, converted to its type; no-op for any other variant.
void writeBack(const ZvVariant& reference, const Value& value);

} // namespace zv::com
