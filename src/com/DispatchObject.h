#pragma once

#include "com/ComObject.h"

namespace zv::com {

/// An object whose members are called by name: the part of it that its class tells.
class DispatchObject : public ComObject {
public:
    /// What a host asks for in one call.
    struct Call {
        std::int32_t id = 0;
        int modes = 0;       ///< ZV_METHOD, ZV_PROPERTYGET, ...; more than one where the host does not care.
        Arguments arguments; ///< In order; the new value of a property is the last. May be changed.
        std::size_t leftOut = SIZE_MAX; ///< The first argument that the host left out; it reads Empty.
    };

    bool answers(const ZvGuid& interface) const override { return interface == ZV_IID_IDispatch; }
    /// The member's identifier; ZV_DISPID_UNKNOWN if there is none. Without regard to case.
    virtual std::int32_t idOf(StringView member) = 0;
    /// The place of a method's parameter, from 0; ZV_DISPID_UNKNOWN if there is none.
    virtual std::int32_t parameterOf(std::int32_t member, StringView name) const = 0;
    /// Fails with a Refusal or a RuntimeError.
    virtual Value invoke(Call& call) = 0;
    /// The interface that a library of types describes; nullptr if none does.
    virtual const ZvGuid* described() const { return nullptr; }

protected:
    using ComObject::ComObject;
};

/// The first seven functions of every table of such an object.
FunctionTable dispatchFunctions();

} // namespace zv::com
