#pragma once

#include "runtime/Value.h"

#include <zvconfiguracion/automation.h>

namespace zv::com {

/// A variant and what hangs on it.
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
    /// Hands what hangs on it to the caller.
    ZvVariant detach()
    {
        const ZvVariant result = variant_;
        variant_ = {};
        return result;
    }
    /// A variant that refers to this one's value, for a callee to change; as it is where there is none.
    ZvVariant reference();
    /// The same, to the variant itself, which the callee may make one of another kind.
    ZvVariant variantReference();

private:
    ZvVariant variant_{};
};

/// What a variant holds or refers to; an argument that was left out is Empty. Fails with 13 if it is of a
/// kind that nothing here can take.
Value valueOf(const ZvVariant& variant);
/// Whether it stands for an argument that was left out. Fails with 13 like valueOf.
bool isLeftOut(const ZvVariant& variant);

/// Puts a value where a by-reference variant refers to, as its kind; any other variant is left alone.
void writeBack(const ZvVariant& reference, const Value& value);

} // namespace zv::com
