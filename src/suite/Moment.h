#pragma once

#include "runtime/String.h"

#include <chrono>
#include <optional>

namespace zv {

using Seconds = std::chrono::sys_seconds;

/// The time by this machine's clock, universal.
Seconds timeHere();
/// "2024-09-12 08:30:00"
String momentText(Seconds time);
/// A text of that form, as databases tell the time; what parts day and hour, and what stands behind the
/// seconds, is theirs. Nothing if it has another form.
std::optional<Seconds> momentIn(StringView text);

/// What a registration stores of time: when it was made and, behind a "+", after how many minutes its station
/// gave the last sign of life: "2024-09-12 08:30:00+17". One text, since the table has one column for it.
class Moment {
public:
    explicit Moment(StringView stored);
    /// How long there was no sign; none where the text tells no time.
    std::chrono::seconds silence(Seconds now) const;
    /// The text with a sign given now; unchanged where it tells no time.
    String signedAt(Seconds now) const;
    /// When the registration was made, in the reader's own local time.
    String shown(Seconds now) const;

private:
    String text_;
    std::optional<Seconds> begin_;
    std::chrono::minutes signs_{0};
};

} // namespace zv
