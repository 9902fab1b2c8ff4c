#pragma once

#include "robot/Play.h"

#include <optional>

namespace zv::com {

/// Test double of the desktop for a host: a guion that acts in the dialogs which the host opens. It has
/// acting and looking commands only; expectations above its first command are what the first dialog shows. A
/// mistake in it, or a difference, fails the host's call with 5 and the line, and so do all later calls and
/// those around it.
class Rehearsal {
public:
    /// Fails with a RuntimeError if the file cannot be read or is no such guion.
    explicit Rehearsal(std::string file);
    void around(const std::function<void()>& call);

private:
    void check(const GuionCommand& command) const;
    void run(const std::function<void()>& call);
    void compare();
    /// Latches the failure: every later call fails with it.
    void giveUp(std::size_t line, StringView reason);
    void failIfGivenUp() const;

    std::string file_;
    Guion guion_;
    std::optional<Play> play_;
    String failure_;
    bool inCall_ = false;
};

} // namespace zv::com
