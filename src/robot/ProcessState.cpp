#include "robot/ProcessState.h"

#include "runtime/Single.h"
#include "session/HostSession.h"

namespace zv {

namespace {

constexpr StringView apiClass = u"ZVApi.cCentroApi";

} // namespace

ProcessState::ProcessState(School databases, std::function<void(StringView)> observe,
                           std::function<void(StringView)> observeStep)
    : school(std::move(databases)), api_(registeredClass(apiClass)),
      desktop_(hasDesktop() ? &desktop() : nullptr)
{
    tracing.observe = std::move(observe);
    tracing.observeStep = std::move(observeStep);
    School forModule = school;
    forModule.centro = std::make_shared<TracedConnection>(school.centro, tracing);
    session = newHostSession(forModule);
    resetSingles();
    useRegion(spanishRegion);
    Err().Clear();
    Err().changed = [this](std::int32_t number) { tracing.step(u"err " + decimalText(number)); };
    if (api_)
        registerClass(apiClass, tracedApi(api_, tracing));
}

ProcessState::~ProcessState()
{
    Err().changed = nullptr;
    resetSingles();
    Err().Clear();
    registerClass(apiClass, api_);
    useRegion(region_);
    useDesktop(desktop_);
}

} // namespace zv
