#pragma once

#include "com/DispatchObject.h"
#include "com/Members.h"

namespace zv::com {

/// An object of one of the classes that hosts make. By name its members are found in the class's tables.
class Instance : public DispatchObject {
public:
    bool answers(const ZvGuid& interface) const override
    {
        return interface == class_.interfaceId || DispatchObject::answers(interface);
    }
    std::int32_t idOf(StringView member) override;
    std::int32_t parameterOf(std::int32_t member, StringView name) const override;
    Value invoke(Call& call) override;
    const ZvGuid* described() const override { return &class_.interfaceId; }

    /// The field at a place, as its kind.
    virtual Value read(std::size_t field) = 0;
    virtual void write(std::size_t field, Value value) = 0;
    /// The method at a place, with an argument of its kind.
    virtual Value run(std::size_t method, const Value& argument) = 0;

protected:
    Instance(const FunctionTable& table, const ClassInfo& info) : DispatchObject(table), class_(info) {}

private:
    Value invokeField(std::size_t place, Call& call);
    Value invokeMethod(std::size_t place, Call& call);
    const ClassInfo& class_;
};

} // namespace zv::com
