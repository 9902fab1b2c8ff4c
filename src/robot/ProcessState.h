#pragma once

#include "forms/Desktop.h"
#include "robot/Tracing.h"
#include "runtime/PropertyBag.h"
#include "runtime/Region.h"

namespace zv {

/// What a guion finds at its start: single instances, regional settings, failures and sent keys as in a new
/// process, a session object on the given databases, the helper object traced. Its end puts back what belongs
/// to the process around it.
class ProcessState {
public:
    /// The callbacks take down what is traced: a line, and a step.
    ProcessState(School databases, std::function<void(StringView)> observe,
                 std::function<void(StringView)> observeStep);
    ~ProcessState();
    ProcessState(const ProcessState&) = delete;
    ProcessState& operator=(const ProcessState&) = delete;

    School school; ///< Not traced: for the guion itself.
    Tracing tracing;
    std::shared_ptr<PropertyBag> session;

private:
    Region region_ = region();
    ObjectFactory api_;
    Desktop* desktop_;
};

} // namespace zv
