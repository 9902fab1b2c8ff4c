#include "com/Variant.h"

#include "com/Objects.h"
#include "com/Text.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>

namespace zv::com {

namespace {

constexpr int typeBits = 0xFFF;

// The layouts that every host has, on 64 and on 32 bits.
constexpr bool wide = sizeof(void*) == 8;
static_assert(sizeof(ZvVariant) == (wide ? 24 : 16) && offsetof(ZvVariant, value) == 8);
static_assert(sizeof(ZvArray) == (wide ? 32 : 24) && offsetof(ZvArray, data) == (wide ? 16 : 12));
static_assert(offsetof(ZvArray, bounds) == (wide ? 24 : 16) && sizeof(ZvParams) == (wide ? 24 : 16));
static_assert(sizeof(ZvException) == (wide ? 64 : 32) && offsetof(ZvException, result) == (wide ? 56 : 28));

std::size_t sizeOf(int type)
{
    switch (type) {
    case ZV_VT_I1:
    case ZV_VT_UI1:
        return sizeof(std::uint8_t);
    case ZV_VT_I2:
    case ZV_VT_UI2:
    case ZV_VT_BOOL:
        return sizeof(std::int16_t);
    case ZV_VT_I4:
    case ZV_VT_UI4:
    case ZV_VT_INT:
    case ZV_VT_UINT:
    case ZV_VT_R4:
    case ZV_VT_ERROR:
        return sizeof(std::int32_t);
    case ZV_VT_R8:
    case ZV_VT_CY:
    case ZV_VT_DATE:
    case ZV_VT_I8:
    case ZV_VT_UI8:
        return sizeof(std::int64_t);
    case ZV_VT_BSTR:
    case ZV_VT_DISPATCH:
    case ZV_VT_UNKNOWN:
        return sizeof(void*);
    case ZV_VT_VARIANT:
        return sizeof(ZvVariant);
    default:
        fail(failure::typeMismatch);
    }
}

/// Bounds check of a foreign array: one dimension, and elements large enough for the type.
bool isListOf(int type, const ZvArray& array)
{
    return array.dimensions == 1 && array.elementSize >= sizeOf(type) &&
           (array.data != nullptr || array.bounds[0].count == 0);
}

/// Dereferences: a shallow, non-owning copy.
ZvVariant pointedAt(const ZvVariant& reference)
{
    const int type = reference.vt & ~ZV_VT_BYREF;
    if (reference.value.reference == nullptr)
        fail(failure::typeMismatch);
    ZvVariant result{};
    if (type == ZV_VT_VARIANT) {
        result = *reference.value.variant;
        if (result.vt == (ZV_VT_BYREF | ZV_VT_VARIANT))
            fail(failure::typeMismatch); // One level only: a cycle would recurse for ever.
        return result.vt & ZV_VT_BYREF ? pointedAt(result) : result;
    }
    if (type == ZV_VT_DECIMAL) {
        constexpr std::size_t size = 16; // A decimal is smaller than a variant.
        std::memcpy(&result, reference.value.reference, size);
        result.vt = ZV_VT_DECIMAL;
        return result;
    }
    result.vt = static_cast<std::uint16_t>(type);
    const std::size_t size = type & ZV_VT_ARRAY ? sizeof(void*) : sizeOf(type);
    std::memcpy(&result.value, reference.value.reference, size);
    return result;
}

Value wholeNumber(std::int64_t number)
{
    if (number >= std::numeric_limits<Long>::min() && number <= std::numeric_limits<Long>::max())
        return static_cast<Long>(number);
    return static_cast<Double>(number);
}

/// Converts a decimal (96 bits over a power of ten): to a Long if it is whole and fits, else to a Double.
Value decimalNumber(const ZvVariant& decimal)
{
    constexpr double wordRange = 18446744073709551616.0; // 2^64
    const std::uint32_t high = decimal.reserved2 | static_cast<std::uint32_t>(decimal.reserved3) << 16U;
    const int scale = decimal.reserved1 & 0xFF;
    const bool negative = (decimal.reserved1 & 0x8000U) != 0;
    const std::uint64_t low = decimal.value.ui8;
    if (scale == 0 && high == 0 && low <= std::numeric_limits<Long>::max())
        return static_cast<Long>(negative ? -static_cast<std::int64_t>(low) : static_cast<std::int64_t>(low));
    const double size = (high * wordRange + static_cast<double>(low)) / std::pow(10.0, scale);
    return negative ? -size : size;
}

/// Converts a one-dimensional array of whole numbers of any width.
Value numbersOf(const ZvArray* array, int type)
{
    auto result = std::make_shared<std::vector<Long>>();
    if (array == nullptr)
        return result;
    if (!isListOf(type, *array))
        fail(failure::typeMismatch);
    const auto* place = static_cast<const char*>(array->data);
    for (std::uint32_t i = 0; i < array->bounds[0].count; ++i, place += array->elementSize) {
        ZvVariant element{};
        if (type == ZV_VT_VARIANT) {
            std::memcpy(&element, place, sizeof element);
            if (element.vt & ZV_VT_BYREF)
                element = pointedAt(element);
            if (element.vt & ZV_VT_ARRAY)
                fail(failure::typeMismatch); // Not nested: an array may contain itself.
        } else {
            element.vt = static_cast<std::uint16_t>(type);
            std::memcpy(&element.value, place, sizeOf(type));
        }
        result->push_back(CLng(valueOf(element)));
    }
    return result;
}

Value objectValue(ZvUnknown* unknown)
{
    if (unknown == nullptr)
        return ObjectPtr();
    void* place = nullptr;
    if (unknown->vtbl->QueryInterface(unknown, &ZV_IID_IDispatch, &place) < 0)
        fail(failure::memberMissing);
    return objectOf(Held(static_cast<ZvDispatch*>(place)));
}

Value plainValue(const ZvVariant& variant)
{
    const auto& value = variant.value;
    switch (variant.vt) {
    case ZV_VT_EMPTY:
        return {};
    case ZV_VT_ERROR:
        if (isLeftOut(variant))
            return {};
        fail(failure::typeMismatch);
    case ZV_VT_NULL:
        return Null();
    case ZV_VT_I1:
        return Integer{value.i1};
    case ZV_VT_UI1:
        return value.ui1;
    case ZV_VT_I2:
        return value.i2;
    case ZV_VT_UI2:
        return Long{value.ui2};
    case ZV_VT_I4:
    case ZV_VT_INT:
        return value.i4;
    case ZV_VT_UI4:
    case ZV_VT_UINT:
        return wholeNumber(value.ui4);
    case ZV_VT_I8:
        return wholeNumber(value.i8);
    case ZV_VT_UI8:
        return value.i8 >= 0 ? wholeNumber(value.i8) : Value(static_cast<Double>(value.ui8));
    case ZV_VT_R4:
        return value.r4;
    case ZV_VT_R8:
    case ZV_VT_DATE: // Days since the end of 1899; there is no date type in Value.
        return value.r8;
    case ZV_VT_CY:
        return Currency{value.cy};
    case ZV_VT_DECIMAL:
        return decimalNumber(variant);
    case ZV_VT_BSTR:
        return textOf(value.text);
    case ZV_VT_BOOL:
        return value.boolean != 0;
    case ZV_VT_DISPATCH:
    case ZV_VT_UNKNOWN:
        return objectValue(value.unknown);
    default:
        if (variant.vt & ZV_VT_ARRAY)
            return numbersOf(value.array, variant.vt & typeBits);
        fail(failure::typeMismatch);
    }
}

/// Visitor that converts a Value to a variant.
struct Filler {
    ZvVariant& variant;

    void operator()(Empty /*none*/) const {}
    void operator()(Null /*none*/) const { variant.vt = ZV_VT_NULL; }
    void operator()(bool truth) const
    {
        variant.vt = ZV_VT_BOOL;
        variant.value.boolean = truth ? -1 : 0;
    }
    void operator()(Byte number) const { put(ZV_VT_UI1, variant.value.ui1, number); }
    void operator()(Integer number) const { put(ZV_VT_I2, variant.value.i2, number); }
    void operator()(Long number) const { put(ZV_VT_I4, variant.value.i4, number); }
    void operator()(Single number) const { put(ZV_VT_R4, variant.value.r4, number); }
    void operator()(Double number) const { put(ZV_VT_R8, variant.value.r8, number); }
    void operator()(Currency amount) const { put(ZV_VT_CY, variant.value.cy, amount.tenThousandths); }
    void operator()(const String& text) const { put(ZV_VT_BSTR, variant.value.text, newText(text)); }
    void operator()(const ObjectPtr& object) const
    {
        put(ZV_VT_DISPATCH, variant.value.dispatch, dispatchOf(object).detach());
    }
    void operator()(const LongArray& numbers) const
    {
        const std::size_t count = numbers ? numbers->size() : 0;
        ZvArray* array = zv_array_new(sizeof(Long), static_cast<std::uint32_t>(count));
        if (array == nullptr)
            throw std::bad_alloc();
        if (count != 0)
            std::memcpy(array->data, numbers->data(), count * sizeof(Long));
        put(ZV_VT_ARRAY | ZV_VT_I4, variant.value.array, array);
    }
    template <class T>
    void put(int type, T& place, T value) const
    {
        place = value;
        variant.vt = static_cast<std::uint16_t>(type);
    }
};

/// Converts to the type of a by-reference variant.
Value asKind(int type, const Value& value)
{
    switch (type) {
    case ZV_VT_UI1:
        return CByte(value);
    case ZV_VT_I2:
        return CInt(value);
    case ZV_VT_I4:
    case ZV_VT_INT:
        return CLng(value);
    case ZV_VT_R4:
        return CSng(value);
    case ZV_VT_R8:
        return CDbl(value);
    case ZV_VT_CY:
        return CCur(value);
    case ZV_VT_BOOL:
        return CBool(value);
    case ZV_VT_BSTR:
        return CStr(value);
    case ZV_VT_DISPATCH:
        if (value.as<ObjectPtr>() != nullptr)
            return value;
        [[fallthrough]];
    default:
        fail(failure::typeMismatch);
    }
}

void copyNumbers(ZvArray& array, int type, const Value& value)
{
    const auto* numbers = value.as<LongArray>();
    if (numbers == nullptr || !*numbers || !isListOf(type, array))
        return;
    const std::size_t count = std::min<std::size_t>((*numbers)->size(), array.bounds[0].count);
    for (std::size_t i = 0; i < count; ++i) {
        ZvVariant element{};
        element.vt = static_cast<std::uint16_t>(type | ZV_VT_BYREF);
        element.value.reference = static_cast<char*>(array.data) + i * array.elementSize;
        writeBack(element, (**numbers)[i]);
    }
}

} // namespace

Variant::Variant(const Value& value) { std::visit(Filler{variant_}, value.data()); }

ZvVariant Variant::reference()
{
    if (variant_.vt == ZV_VT_EMPTY || variant_.vt == ZV_VT_NULL || variant_.vt == ZV_VT_ERROR)
        return variant_;
    ZvVariant result{};
    result.vt = static_cast<std::uint16_t>(variant_.vt | ZV_VT_BYREF);
    result.value.reference = &variant_.value;
    return result;
}

Value valueOf(const ZvVariant& variant)
{
    return plainValue(variant.vt & ZV_VT_BYREF ? pointedAt(variant) : variant);
}

bool isLeftOut(const ZvVariant& variant)
{
    const ZvVariant plain = variant.vt & ZV_VT_BYREF ? pointedAt(variant) : variant;
    return plain.vt == ZV_VT_ERROR && plain.value.error == ZV_DISP_PARAMNOTFOUND;
}

void writeBack(const ZvVariant& reference, const Value& value)
{
    if ((reference.vt & ZV_VT_BYREF) == 0 || reference.value.reference == nullptr)
        return;
    const int type = reference.vt & ~ZV_VT_BYREF;
    if (type & ZV_VT_ARRAY) {
        ZvArray* array = *static_cast<ZvArray**>(reference.value.reference);
        if (array != nullptr)
            copyNumbers(*array, type & typeBits, value);
        return;
    }
    if (type == ZV_VT_VARIANT) {
        ZvVariant& target = *reference.value.variant;
        if (target.vt & ZV_VT_BYREF)
            return writeBack(target, value);
        Variant made(value);
        // Swap before releasing the old value: its destructor may be re-entrant, and must find the new one.
        ZvVariant old = target;
        target = made.detach();
        return zv_variant_clear(&old);
    }
    Variant made(asKind(type, value));
    // The overwritten value is released, by its type, only after the swap.
    ZvVariant old{};
    old.vt = static_cast<std::uint16_t>(type);
    std::memcpy(&old.value, reference.value.reference, sizeOf(type));
    std::memcpy(reference.value.reference, &made.raw().value, sizeOf(type));
    made.detach();
    zv_variant_clear(&old);
}

} // namespace zv::com
