#pragma once

#include "data/Connection.h"

namespace zv {

/// Databases and a key that are made for one guion and gone with it: what is played on them never touches the
/// key of the person who plays.
class FreshSchool {
public:
    /// `url` as temporarySchool has it. Empty, or the sample school. Fails as the databases do.
    FreshSchool(StringView url, bool sample);
    ~FreshSchool();
    FreshSchool(const FreshSchool&) = delete;
    FreshSchool& operator=(const FreshSchool&) = delete;

    const School& school() const { return school_; }

private:
    School school_;
};

} // namespace zv
