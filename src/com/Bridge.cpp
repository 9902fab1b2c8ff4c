#include "com/Bridge.h"

#include "com/NamedObject.h"
#include "com/Variant.h"

#include <algorithm>

namespace zv::com {

namespace {

constexpr std::uint32_t spanish = 0x0C0A; ///< Locale identifier of the names.

/// Arguments as a host takes them: backwards.
class Backwards {
public:
    Backwards(Arguments& arguments, Access access) : arguments_(arguments)
    {
        values_.reserve(arguments.size());
        for (const Value& argument : arguments) {
            values_.emplace_back(argument);
            ZvVariant& value = values_.back().raw();
            if (access != Access::let && value.vt == ZV_VT_EMPTY) {
                value.vt = ZV_VT_ERROR;
                value.value.error = ZV_DISP_PARAMNOTFOUND;
            }
            handed_.push_back(access == Access::call ? values_.back().reference() : value);
        }
        std::ranges::reverse(handed_);
    }
    ZvParams params(std::int32_t* name)
    {
        return {handed_.data(), name, static_cast<std::uint32_t>(handed_.size()), name == nullptr ? 0U : 1U};
    }
    /// Copies by-reference arguments back.
    void takeBack()
    {
        for (std::size_t i = 0; i < arguments_.size(); ++i)
            if (handed_[handed_.size() - 1 - i].vt & ZV_VT_BYREF)
                takeBack(arguments_[i], valueOf(values_[i].raw()));
    }

private:
    static void takeBack(Value& argument, Value changed)
    {
        const auto* numbers = argument.as<LongArray>();
        const auto* fresh = changed.as<LongArray>();
        if (numbers != nullptr && *numbers && fresh != nullptr)
            **numbers = **fresh;
        else
            argument = std::move(changed);
    }

    Arguments& arguments_;
    std::vector<Variant> values_;
    std::vector<ZvVariant> handed_; ///< Non-owning: they refer to or copy `values_`.
};

bool& hostsAreLeft()
{
    static bool left = false;
    return left;
}

class HostObject final : public Object {
public:
    explicit HostObject(Held<ZvDispatch> dispatch) : dispatch_(std::move(dispatch)) {}
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;
    ~HostObject() override
    {
        if (hostsAreLeft())
            static_cast<void>(dispatch_.detach());
    }
    const Held<ZvDispatch>& dispatch() const { return dispatch_; }

    StringView TypeName() const override { return u"Object"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        // Keeps the host's object alive: a re-entrant call may destroy this adapter.
        const Held<ZvDispatch> held = dispatch_;
        ZvDispatch* host = held.get();
        const std::int32_t id = idOf(*host, member);
        std::int32_t assigned = ZV_DISPID_PROPERTYPUT;
        Backwards handed(arguments, access);
        ZvParams params = handed.params(access == Access::let ? &assigned : nullptr);
        Variant result;
        ZvException exception{};
        std::uint32_t blamed = 0;
        const ZvResult answered =
            host->vtbl->Invoke(host, id, &ZV_IID_NULL, spanish, modesOf(access, arguments), &params,
                               access == Access::let ? nullptr : &result.raw(), &exception, &blamed);
        if (answered < 0)
            failAs(answered, exception, member);
        handed.takeBack();
        return valueOf(result.raw());
    }

private:
    static std::int32_t idOf(ZvDispatch& host, StringView member)
    {
        String name(member);
        auto* units = reinterpret_cast<std::uint16_t*>(name.data());
        std::int32_t id = ZV_DISPID_UNKNOWN;
        ZvException none{};
        const ZvResult found = host.vtbl->GetIDsOfNames(&host, &ZV_IID_NULL, &units, 1, spanish, &id);
        if (found < 0)
            failAs(found, none, member);
        return id;
    }
    static std::uint16_t modesOf(Access access, const Arguments& arguments)
    {
        if (access != Access::let)
            return ZV_METHOD | ZV_PROPERTYGET;
        const bool object = !arguments.empty() && arguments.back().as<ObjectPtr>() != nullptr;
        return object ? ZV_PROPERTYPUT | ZV_PROPERTYPUTREF : ZV_PROPERTYPUT;
    }

    Held<ZvDispatch> dispatch_;
};

} // namespace

void leaveHostObjects() { hostsAreLeft() = true; }

ObjectPtr objectOf(Held<ZvDispatch> dispatch)
{
    return dispatch ? std::make_shared<HostObject>(std::move(dispatch)) : nullptr;
}

Held<ZvDispatch> dispatchOf(const ObjectPtr& object)
{
    if (!object)
        return {};
    if (const auto* host = dynamic_cast<const HostObject*>(object.get()))
        return host->dispatch();
    return Held(newNamedObject(object).release()->face<ZvDispatch>());
}

} // namespace zv::com
