#include "robot/ProcessState.h"

#include "runtime/Single.h"
#include "session/HostSession.h"

namespace zv {

namespace {

constexpr StringView apiClass = u"ZVApi.cCentroApi";

} // namespace

ProcessState::ProcessState(School databases, std::function<void(StringView)> observe)
    : school(std::move(databases)), api_(registeredClass(apiClass)),
      desktop_(hasDesktop() ? &desktop() : nullptr)
{
    tracing.observe = std::move(observe);
    School forModule = school;
    forModule.centro = std::make_shared<TracedConnection>(school.centro, tracing);
    session = newHostSession(forModule);
    resetSingles();
    useRegion(spanishRegion);
    Err().Clear();
    if (api_)
        registerClass(apiClass, tracedApi(api_, tracing));
}

ProcessState::~ProcessState()
{
    resetSingles();
    Err().Clear();
    registerClass(apiClass, api_);
    useRegion(region_);
    useDesktop(desktop_);
}

} // namespace zv
