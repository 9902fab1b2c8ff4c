#include "robot/ScriptedStage.h"

#include "forms/Acts.h"

namespace zv {

namespace {

class ScriptedDesktop final : public Desktop {
public:
    explicit ScriptedDesktop(Play& play) : play_(play) {}
    void opened(Form& form) override { play_.opened(form); }
    void runModal(Form& form) override { play_.goOnWhileOpen(form); }
    void closed(Form& form) override { play_.closed(form); }
    void messageBox(StringView prompt, Integer flags, StringView title) override
    {
        play_.messageBox(prompt, flags, title);
    }
    void beep() override { play_.beep(); }
    void doEvents() override { play_.repainted(); }
    void handlerFailed(const RuntimeError& error) override { play_.failed(error); }
    void changed(PropertyOwner& owner, const PropertyBase* property) override
    {
        play_.changed(owner, property);
    }

private:
    Play& play_;
};

} // namespace

Stage scriptedStage(Play& play)
{
    return {std::make_unique<ScriptedDesktop>(play), std::make_unique<Acts>()};
}

} // namespace zv
