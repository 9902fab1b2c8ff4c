#include "com/NamedObject.h"

#include "com/DispatchObject.h"

#include <algorithm>

namespace zv::com {

namespace {

/// Assigns dispatch identifiers lazily, in the order in which hosts ask for names: our objects look members
/// up by name and cannot list them.
class NamedObject final : public DispatchObject {
public:
    explicit NamedObject(ObjectPtr object) : DispatchObject(functions()), object_(std::move(object)) {}

    std::int32_t idOf(StringView member) override
    {
        const auto known =
            std::ranges::find_if(names_, [&](StringView name) { return sameName(name, member); });
        const auto place = known - names_.begin();
        if (known == names_.end())
            names_.emplace_back(member);
        return static_cast<std::int32_t>(place) + 1;
    }
    std::int32_t parameterOf(std::int32_t /*member*/, StringView /*name*/) const override
    {
        return ZV_DISPID_UNKNOWN;
    }
    Value invoke(Call& call) override
    {
        // Default member, for the reserved identifier 0.
        const String usual = sameName(object_->TypeName(), u"Collection") ? u"Item" : u"Value";
        if (call.id < 0 || static_cast<std::size_t>(call.id) > names_.size())
            throw Refusal{ZV_DISP_MEMBERNOTFOUND};
        const String member =
            call.id == ZV_DISPID_VALUE ? usual : names_[static_cast<std::size_t>(call.id) - 1];
        return object_->invoke(member, accessOf(call.modes), call.arguments);
    }

private:
    static Access accessOf(int modes)
    {
        if (modes & (ZV_PROPERTYPUT | ZV_PROPERTYPUTREF))
            return Access::let;
        return modes & ZV_METHOD ? Access::call : Access::get;
    }
    static const FunctionTable& functions()
    {
        static const FunctionTable table = dispatchFunctions();
        return table;
    }

    ObjectPtr object_;
    std::vector<String> names_;
};

} // namespace

std::unique_ptr<ComObject> newNamedObject(ObjectPtr object)
{
    return std::make_unique<NamedObject>(std::move(object));
}

} // namespace zv::com
