#pragma once

#include "com/DispatchObject.h"
#include "com/Members.h"

namespace zv::com {

/// Object of one of the classes that hosts instantiate. Late-bound calls are resolved in the class's
/// descriptor.
class Instance : public DispatchObject {
public:
    bool answers(const ZvGuid& interface) const override
    {
        return interface == class_.interfaceId || DispatchObject::answers(interface);
    }
    std::int32_t idOf(StringView member) override;
    std::int32_t parameterOf(std::int32_t member, StringView name) const override;
    Value invoke(Call& call) override;

    /// Reads the field at that index, converted to its kind.
    virtual Value read(std::size_t field) = 0;
    virtual void write(std::size_t field, Value value) = 0;
    /// Calls the method at that index; the argument is converted already.
    virtual Value run(std::size_t method, const Value& argument) = 0;

protected:
    Instance(const FunctionTable& table, const ClassInfo& info) : DispatchObject(table), class_(info) {}

private:
    Value invokeField(std::size_t place, Call& call);
    Value invokeMethod(std::size_t place, Call& call);
    const ClassInfo& class_;
};

} // namespace zv::com
