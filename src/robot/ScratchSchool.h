#pragma once

#include "data/Engine.h"

namespace zv {

/// RAII owner of a scratch copy of a school: temporary databases of the same engine, so that keys, widths and
/// failures are its own, and nothing reaches the school. No transaction that is rolled back: on one engine it
/// would keep the other stations waiting, on the other it ends with its first failure. Copy on first use: a
/// table is copied, as the school was at one instant, when a statement names it.
class ScratchSchool {
public:
    /// Fails with a RuntimeError where the engine has no temporary databases.
    explicit ScratchSchool(StringView url);
    ~ScratchSchool();
    ScratchSchool(const ScratchSchool&) = delete;
    ScratchSchool& operator=(const ScratchSchool&) = delete;

    const School& school() const { return school_; }

private:
    School school_;
};

} // namespace zv
