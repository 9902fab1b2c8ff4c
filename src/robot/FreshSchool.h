#pragma once

#include "data/Connection.h"

namespace zv {

/// RAII owner of temporary databases and of a temporary cipher key, for one guion: nothing that is played on
/// them touches the key of the person who plays.
class FreshSchool {
public:
    /// `url` as for temporarySchool(). `sample`: filled with the sample school instead of empty. Fails with a
    /// RuntimeError.
    FreshSchool(StringView url, bool sample);
    ~FreshSchool();
    FreshSchool(const FreshSchool&) = delete;
    FreshSchool& operator=(const FreshSchool&) = delete;

    const School& school() const { return school_; }

private:
    School school_;
};

} // namespace zv
