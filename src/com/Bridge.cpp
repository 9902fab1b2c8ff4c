#include "com/Bridge.h"

#include "com/NamedObject.h"
#include "com/Variant.h"

#include <algorithm>
#include <optional>

namespace zv::com {

namespace {

constexpr std::uint32_t spanish = 0x0C0A; ///< Locale identifier of the names.

/// What objects of scripts have behind the seven functions of all: of this table only the first is called.
struct ScriptObject;
struct ScriptTable {
    ZvDispatchVtbl dispatch;
    ZvResult(ZV_CALL* GetDispID)(ScriptObject*, ZvBstr name, std::uint32_t how, std::int32_t* id);
};
struct ScriptObject {
    const ScriptTable* vtbl;
};
constexpr ZvGuid scriptInterface = {
    0xA6EF9860, 0xC720, 0x11D0, {0x93, 0x37, 0x00, 0xA0, 0xC9, 0x0D, 0xCA, 0xA9}};

/// The object as one of a script; none if it is no such object.
Held<ScriptObject> scriptOf(ZvDispatch& host)
{
    void* place = nullptr;
    const ZvResult found =
        host.vtbl->unknown.QueryInterface(reinterpret_cast<ZvUnknown*>(&host), &scriptInterface, &place);
    return Held(found < 0 ? nullptr : static_cast<ScriptObject*>(place));
}

/// Arguments as a host takes them: backwards. A script's routines take references to variants, and not all of
/// them references to what is in one.
class Backwards {
public:
    Backwards(Arguments& arguments, Access access, bool script) : arguments_(arguments)
    {
        values_.reserve(arguments.size());
        for (const Value& argument : arguments) {
            values_.emplace_back(argument);
            ZvVariant& value = values_.back().raw();
            if (access != Access::let && value.vt == ZV_VT_EMPTY) {
                value.vt = ZV_VT_ERROR;
                value.value.error = ZV_DISP_PARAMNOTFOUND;
            }
            handed_.push_back(access != Access::call ? value
                              : script               ? values_.back().variantReference()
                                                     : values_.back().reference());
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
        Backwards handed(arguments, access, access == Access::call && !arguments.empty() && isScripts());
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
    bool isScripts()
    {
        if (!scripts_)
            scripts_ = static_cast<bool>(scriptOf(*dispatch_.get()));
        return *scripts_;
    }
    static std::int32_t idOf(ZvDispatch& host, StringView member)
    {
        String name(member);
        auto* units = reinterpret_cast<std::uint16_t*>(name.data());
        std::int32_t id = ZV_DISPID_UNKNOWN;
        ZvException none{};
        ZvResult found = host.vtbl->GetIDsOfNames(&host, &ZV_IID_NULL, &units, 1, spanish, &id);
        // Some languages of scripts tell names in their own way alone, or only so without regard to case.
        if (found < 0)
            if (const Held<ScriptObject> script = scriptOf(host)) {
                constexpr std::uint32_t anyCase = 8;
                Variant text{Value(name)};
                found = script.get()->vtbl->GetDispID(script.get(), text.raw().value.text, anyCase, &id);
            }
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
    std::optional<bool> scripts_;
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
