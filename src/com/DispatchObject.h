#pragma once

#include "com/ComObject.h"

namespace zv::com {

/// Late-bound object (IDispatch); the virtual functions are what its class adds to the protocol.
class DispatchObject : public ComObject {
public:
    /// Unmarshalled call of a host.
    struct Call {
        std::int32_t id = 0;
        int modes = 0; ///< Bits ZV_METHOD, ZV_PROPERTYGET, ...; several if the host does not distinguish.
        Arguments arguments;            ///< In order; the new value of a property is last. By reference.
        std::size_t leftOut = SIZE_MAX; ///< Index of the first omitted argument; its value is Empty.
    };

    bool answers(const ZvGuid& interface) const override { return interface == ZV_IID_IDispatch; }
    /// Dispatch identifier of a member, without regard to case; ZV_DISPID_UNKNOWN if there is none.
    virtual std::int32_t idOf(StringView member) = 0;
    /// Position of a named parameter, from 0; ZV_DISPID_UNKNOWN if there is none.
    virtual std::int32_t parameterOf(std::int32_t member, StringView name) const = 0;
    /// Fails with a Refusal or a RuntimeError.
    virtual Value invoke(Call& call) = 0;

protected:
    using ComObject::ComObject;
};

/// Vtable of IDispatch: the first seven entries of every table of such an object.
FunctionTable dispatchFunctions();

} // namespace zv::com
