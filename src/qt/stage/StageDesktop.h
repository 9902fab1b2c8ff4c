#pragma once

#include "qt/QtDesktop.h"
#include "robot/Play.h"

#include <chrono>
#include <exception>

namespace zv {

/// Desktop of a stage: real windows that report to the play what they show. The play reads on from within
/// their modal loops.
class StageDesktop final : public QtDesktop {
public:
    StageDesktop(Play& play, std::chrono::milliseconds pace) : play_(play), pace_(pace) {}

    void opened(Form& form) override;
    void closed(Form& form) override;
    void messageBox(StringView prompt, Integer flags, StringView title) override;
    void beep() override;
    void doEvents() override;
    void handlerFailed(const RuntimeError& error) override;
    void changed(PropertyOwner& owner, const PropertyBase* property) override;

    /// Runs a function that sends events to the widgets. A mistake of the guion met meanwhile is held back
    /// (exception_ptr) until the toolkit's own routines, which know no exceptions, have returned.
    void acting(const std::function<void()>& events);
    /// Runs the event loop for one pace, so that a person can watch.
    void breathe();

protected:
    bool helps() const override { return false; }
    void ask(QMessageBox& box) override;
    void runWindow(FormWindow& window) override;

private:
    Play& play_;
    std::chrono::milliseconds pace_;
    int acting_ = 0;
    std::exception_ptr mistake_;
};

} // namespace zv
