#pragma once

#include "runtime/Time.h"

namespace zv {

/// Times of a registration, serialised in its one column: creation and, behind a "+", the minutes from there
/// to the station's last heartbeat: "2024-09-12 08:30:00+17".
class Moment {
public:
    explicit Moment(StringView stored);
    /// Age of the last heartbeat; zero if the text is no time.
    std::chrono::seconds silence(Seconds now) const;
    /// The text with a heartbeat of now; unchanged if it is no time.
    String signedAt(Seconds now) const;
    /// Creation time in this machine's local time; corrected by the difference of its clock to `now`.
    String shown(Seconds now) const;

private:
    String text_;
    std::optional<Seconds> begin_;
    std::chrono::minutes signs_{0};
};

} // namespace zv
