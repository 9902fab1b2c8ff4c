#pragma once

#include "forms/Desktop.h"
#include "robot/Tracing.h"
#include "runtime/PropertyBag.h"
#include "runtime/Region.h"

namespace zv {

/// RAII guard of the process-wide state, so that guiones played in one process are independent: resets single
/// instances, regional settings and `Err` to those of a new process, and makes a session object on the given
/// databases and a traced helper object. The destructor restores the desktop, the class and the settings of
/// the process around it.
class ProcessState {
public:
    /// The callbacks take down what is traced: a line, and a step.
    ProcessState(School databases, std::function<void(StringView)> observe,
                 std::function<void(StringView)> observeStep);
    ~ProcessState();
    ProcessState(const ProcessState&) = delete;
    ProcessState& operator=(const ProcessState&) = delete;

    School school; ///< Not traced: for the guion's own statements.
    Tracing tracing;
    std::shared_ptr<PropertyBag> session;

private:
    Region region_ = region();
    ObjectFactory api_;
    Desktop* desktop_;
};

} // namespace zv
