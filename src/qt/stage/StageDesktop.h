#pragma once

#include "qt/QtDesktop.h"
#include "robot/WindowStage.h"

#include <chrono>

namespace zv {

/// Desktop of a stage in real windows.
class StageDesktop final : public Reporting<QtDesktop> {
public:
    StageDesktop(Play& play, std::chrono::milliseconds pace) : Reporting(play), pace_(pace) {}

    /// Runs the event loop for one pace, so that a person can watch.
    void breathe() override;
    void runModal(Form& form) override;

protected:
    bool helps() const override { return false; }
    void ask(QMessageBox& box) override;
    void runWindow(FormWindow& window) override;

private:
    std::chrono::milliseconds pace_;
};

} // namespace zv
