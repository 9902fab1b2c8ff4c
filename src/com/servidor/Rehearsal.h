#pragma once

#include "robot/Play.h"

#include <optional>

namespace zv::com {

/// A guion that answers the dialogs which a host opens: it holds acts and looks only, and what is expected
/// above its first command is what the first dialog shows. A mistake in it, or another sight than it expects,
/// fails the host's call with 5 and says where, and so does every call after it, and around it.
class Rehearsal {
public:
    /// Fails with a RuntimeError if the file cannot be read or is no such guion.
    explicit Rehearsal(std::string file);
    void around(const std::function<void()>& call);

private:
    void check(const GuionCommand& command) const;
    void run(const std::function<void()>& call);
    void compare();
    /// From here on every call fails.
    void giveUp(std::size_t line, StringView reason);
    void failIfGivenUp() const;

    std::string file_;
    Guion guion_;
    std::optional<Play> play_;
    String failure_;
    bool inCall_ = false;
};

} // namespace zv::com
