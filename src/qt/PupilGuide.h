#pragma once

#include "forms/SectionKeys.h"
#include "forms/UnsavedPupils.h"

#include <QElapsedTimer>
#include <QLabel>

#include <functional>

class QKeyEvent;

namespace zv {

/// What a window offers a person who goes through a section, around a dialog that knows nothing of it: faster
/// keys, a line of progress under the form, and a question before what was typed is thrown away.
class PupilGuide {
public:
    using Run = std::function<bool(const std::function<bool(Acts&)>&)>;

    PupilGuide(Form& form, QWidget& window);

    bool isSection() const { return controls_.isSection(); }
    const SectionControls& controls() const { return controls_; }
    const UnsavedPupils& unsaved() const { return unsaved_; }
    /// The line under the form. Hidden where the form holds no section.
    QLabel& line() { return line_; }
    /// Runs the macro of a key, through the window; false: the key has its plain meaning.
    bool press(const QKeyEvent& event, const Run& run);
    /// Whether a person's click on that control may go on: asks, if it leaves something unsaved.
    bool mayClick(const Control& control);
    /// Asks, if there is anything to lose. True: the form may be left.
    bool mayLeave();
    void changed(const Control& control, const PropertyBase* property);
    /// Follows the form, after each act.
    void look();
    /// A statement has returned: tells how many there were since a save began, once it takes long enough to
    /// be noticed.
    void working();

private:
    SectionControls controls_;
    UnsavedPupils unsaved_{controls_};
    SectionKeys keys_{controls_};
    /// Whether a save began. If the form is still there it was cut, and only the dialog knows for whom.
    bool cut_ = false;
    QElapsedTimer saving_; ///< Since a save began; invalid while there is none.
    qint64 told_ = 0;      ///< When its progress was painted last, in its own time.
    int statements_ = 0;   ///< Of that save, so far.
    QLabel line_;
};

} // namespace zv
