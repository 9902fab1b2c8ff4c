#pragma once

#include "qt/QtDesktop.h"
#include "robot/Play.h"

#include <chrono>
#include <exception>

namespace zv {

/// Real windows that tell the play what they see. While one is open the play goes on reading.
class StageDesktop final : public QtDesktop {
public:
    StageDesktop(Play& play, std::chrono::milliseconds pace) : play_(play), pace_(pace) {}

    void opened(Form& form) override;
    void closed(Form& form) override;
    void messageBox(StringView prompt, Integer flags, StringView title) override;
    void beep() override;
    void handlerFailed(const RuntimeError& error) override;

    /// Sends events to the widgets. A mistake of the guion that comes up meanwhile waits until the toolkit's
    /// own routines, which know no exceptions, have returned.
    void acting(const std::function<void()>& events);
    /// Lets what happened be seen.
    void breathe();

protected:
    void ask(QMessageBox& box) override;
    void runWindow(FormWindow& window) override;

private:
    Play& play_;
    std::chrono::milliseconds pace_;
    int acting_ = 0;
    std::exception_ptr mistake_;
};

} // namespace zv
