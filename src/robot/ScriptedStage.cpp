#include "robot/ScriptedStage.h"

#include "robot/WindowStage.h"

namespace zv {

namespace {

/// A desktop that shows nothing.
class NoScreen : public Desktop {
public:
    void opened(Form&) override {}
    void closed(Form&) override {}
    void messageBox(StringView, Integer, StringView) override {}
    void doEvents() override {}
    void handlerFailed(const RuntimeError&) override {}
};

class ScriptedDesktop final : public Reporting<NoScreen> {
public:
    using Reporting::Reporting;
    void runModal(Form& form) override { goOn(form); }
};

} // namespace

Stage scriptedStage(Play& play)
{
    return {std::make_unique<ScriptedDesktop>(play), std::make_unique<Acts>()};
}

} // namespace zv
