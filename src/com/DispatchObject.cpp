#include "com/DispatchObject.h"

#include "com/Variant.h"

#include <algorithm>

namespace zv::com {

namespace {

using DispatchSelf = Self<DispatchObject>;

ZvResult getTypeInfoCount(Face* /*face*/, std::uint32_t* count)
{
    if (count == nullptr)
        return ZV_E_POINTER;
    *count = 0;
    return ZV_OK;
}

ZvResult getTypeInfo(Face* /*face*/, std::uint32_t /*index*/, std::uint32_t /*language*/, void** info)
{
    if (info == nullptr)
        return ZV_E_POINTER;
    *info = nullptr;
    return ZV_DISP_BADINDEX;
}

/// Zero-terminated name.
StringView nameAt(const std::uint16_t* name) { return reinterpret_cast<const char16_t*>(name); }

/// Check of the reserved parameter that both calls by name have.
bool isReserved(const ZvGuid* reserved) { return reserved == nullptr || *reserved == ZV_IID_NULL; }

ZvResult getIDsOfNames(Face* face, const ZvGuid* reserved, std::uint16_t** names, std::uint32_t count,
                       std::uint32_t /*language*/, std::int32_t* ids)
{
    if (names == nullptr || ids == nullptr || count == 0 ||
        std::find(names, names + count, nullptr) != names + count)
        return ZV_E_INVALIDARG;
    if (!isReserved(reserved))
        return ZV_DISP_UNKNOWNINTERFACE;
    std::fill_n(ids, count, std::int32_t{ZV_DISPID_UNKNOWN});
    return guarded([&] {
        const DispatchSelf self(face);
        ids[0] = self->idOf(nameAt(names[0]));
        for (std::uint32_t i = 1; i < count && ids[0] != ZV_DISPID_UNKNOWN; ++i)
            ids[i] = self->parameterOf(ids[0], nameAt(names[i]));
        if (std::find(ids, ids + count, ZV_DISPID_UNKNOWN) != ids + count)
            throw Refusal{ZV_DISP_UNKNOWNNAME};
    });
}

/// Maps parameter positions to a host's arguments, which come in reverse order and with the named ones first.
class Places {
public:
    Places(const ZvParams* params, bool assigns)
    {
        if (params == nullptr || params->count == 0)
            return;
        variants_ = params->arguments;
        const std::uint32_t named = assigns ? 0 : params->nameCount;
        if (params->count > mostArguments || params->nameCount > params->count)
            throw Refusal{ZV_DISP_BADPARAMCOUNT};
        if (variants_ == nullptr || (named != 0 && params->names == nullptr))
            throw Refusal{ZV_E_INVALIDARG};
        for (std::uint32_t i = params->count; i-- > named;)
            at_.push_back(i);
        for (std::uint32_t i = 0; i < named; ++i) {
            const std::int32_t place = params->names[i];
            if (place < 0 || place >= static_cast<std::int32_t>(mostArguments))
                throw Refusal{ZV_DISP_PARAMNOTFOUND};
            const auto position = static_cast<std::size_t>(place);
            at_.resize(std::max(at_.size(), position + 1), nowhere);
            at_[position] = i;
        }
    }
    std::size_t count() const { return at_.size(); }
    std::uint32_t indexOf(std::size_t place) const { return place < at_.size() ? at_[place] : nowhere; }
    const ZvVariant* variant(std::size_t place) const
    {
        return indexOf(place) == nowhere ? nullptr : variants_ + at_[place];
    }

    static constexpr std::uint32_t nowhere = UINT32_MAX;

private:
    static constexpr std::uint32_t mostArguments = 64;
    const ZvVariant* variants_ = nullptr;
    std::vector<std::uint32_t> at_;
};

void takeArguments(const Places& places, DispatchObject::Call& call)
{
    for (std::size_t place = 0; place < places.count(); ++place) {
        const ZvVariant* variant = places.variant(place);
        try {
            call.arguments.push_back(variant == nullptr ? Value() : valueOf(*variant));
            if (variant == nullptr || isLeftOut(*variant))
                call.leftOut = std::min(call.leftOut, place);
        } catch (const RuntimeError&) {
            throw Refusal{ZV_DISP_BADVARTYPE, place};
        }
    }
}

void answer(DispatchObject& object, DispatchObject::Call& call, const Places& places, ZvVariant* result)
{
    takeArguments(places, call);
    const Arguments given = call.arguments;
    Variant answered(object.invoke(call));
    for (std::size_t place = 0; place < std::min(given.size(), call.arguments.size()); ++place) {
        const ZvVariant* variant = places.variant(place);
        // Always for an array, which a callee changes in place, so that comparing cannot tell.
        if (variant != nullptr &&
            (given[place].data() != call.arguments[place].data() || given[place].as<LongArray>() != nullptr))
            writeBack(*variant, call.arguments[place]);
    }
    if (result != nullptr)
        *result = answered.detach();
}

ZvResult invoke(Face* face, std::int32_t id, const ZvGuid* reserved, std::uint32_t /*language*/,
                std::uint16_t modes, const ZvParams* params, ZvVariant* result, ZvException* exception,
                std::uint32_t* argument)
{
    if (!isReserved(reserved))
        return ZV_DISP_UNKNOWNINTERFACE;
    const auto tell = [&](std::int32_t number, const String& text) {
        if (exception != nullptr)
            describe(*exception, number, text);
        return ZvResult{ZV_DISP_EXCEPTION};
    };
    return guarded(
        [&] {
            const DispatchSelf self(face);
            const Places places(params, (modes & (ZV_PROPERTYPUT | ZV_PROPERTYPUTREF)) != 0);
            DispatchObject::Call call;
            call.id = id;
            call.modes = modes;
            try {
                answer(*self.operator->(), call, places, result);
            } catch (const Refusal& refusal) {
                if (argument != nullptr && places.indexOf(refusal.argument) != Places::nowhere)
                    *argument = places.indexOf(refusal.argument);
                throw;
            }
        },
        tell);
}

} // namespace

FunctionTable dispatchFunctions()
{
    FunctionTable table = unknownFunctions();
    for (const AnyFunction function :
         {reinterpret_cast<AnyFunction>(getTypeInfoCount), reinterpret_cast<AnyFunction>(getTypeInfo),
          reinterpret_cast<AnyFunction>(getIDsOfNames), reinterpret_cast<AnyFunction>(invoke)})
        table.push_back(function);
    return table;
}

} // namespace zv::com
