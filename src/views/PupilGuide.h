#pragma once

#include "views/SectionKeys.h"
#include "views/UnsavedPupils.h"
#include "views/WindowAids.h"

#include <chrono>
#include <functional>
#include <optional>

namespace zv {

/// A key with others held down, as the faster keys of a section know it.
struct Chord {
    enum class Key : unsigned char { tab, pageUp, pageDown, enter, remove, d };
    Key key = Key::tab;
    bool control = false;
    bool shift = false;
    bool alt = false;
    bool operator==(const Chord&) const = default;
};

/// What a window offers a person who goes through a section, around a dialog that knows nothing of it: faster
/// keys, a line of progress under the form, and a question before what was typed is thrown away.
class PupilGuide {
public:
    using Run = std::function<bool(const std::function<bool(Acts&)>&)>;

    PupilGuide(Form& form, WindowAids& aids) : controls_(form), aids_(aids) {}

    bool isSection() const { return controls_.isSection(); }
    const SectionControls& controls() const { return controls_; }
    /// What the line under the form says. Empty where the form holds no section.
    const String& line() const { return line_; }
    /// Runs the macro of a key, or of a character, through the window; false: it has its plain meaning.
    bool press(const Chord& chord, const Run& run);
    bool type(StringView typed, const Run& run);
    /// Whether a person's click on that control may go on: asks, if it leaves something unsaved.
    bool mayClick(const Control& control);
    /// Asks, if there is anything to lose. True: the form may be left.
    bool mayLeave();
    void changed(const Control& control, const PropertyBase* property);
    /// Follows the form, after each act. True: the line says something else.
    bool look();
    /// A statement has returned: tells how many there were since a save began, once it takes long enough to
    /// be noticed. True: the line is to be painted at once, as no event is handled before the save has ended.
    bool working();

private:
    using Clock = std::chrono::steady_clock;
    SectionControls controls_;
    WindowAids& aids_;
    UnsavedPupils unsaved_{controls_};
    SectionKeys keys_{controls_};
    /// Whether a save began. If the form is still there it was cut, and only the dialog knows for whom.
    bool cut_ = false;
    /// When a save tells of itself next; none while there is none.
    std::optional<Clock::time_point> tellNext_;
    int statements_ = 0; ///< Of that save, so far.
    String line_;
};

} // namespace zv
