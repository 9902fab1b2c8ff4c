#pragma once

#include "forms/Desktop.h"
#include "forms/Person.h"
#include "robot/ProcessState.h"
#include "robot/Transcript.h"

namespace zv {

class Play;

/// Where a guion is played: the desktop that shows the dialogs and tells the play what it sees, and the
/// person at it.
struct Stage {
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<Person> person;
};
using StageMaker = std::function<Stage(Play&)>;

/// One guion that is being played: reads command after command, also while a dialog is open, and takes down
/// what is observed.
class Play {
public:
    Play(const Guion& guion, const School& school, const StageMaker& stage);

    /// Plays the whole guion. Fails with a GuionError; so does one that ends with a dialog open.
    void run();
    const Transcript& transcript() const { return transcript_; }
    /// For a guion that is written while it is played: called when every command has been read, also while a
    /// dialog is open; where it adds none, the guion ends.
    void writeOn(std::function<void()> more) { more_ = std::move(more); }

    /// For a host that opens the dialogs itself: the first command counts as read and is not run.
    void begin() { transcript_.begin(); }

    // For the desktop: what a person would notice, written down.
    void observe(StringView line) { transcript_.observe(line); }
    void opened(Form& form);
    void closed(Form& form);
    void messageBox(StringView prompt, Integer flags, StringView title);
    void beep() { observe(u"bip"); }
    /// For `traza pasos`: a property of a form or a control changed; the screen was let repaint.
    void changed(const PropertyOwner& owner, const PropertyBase* property);
    void repainted() { state_.tracing.step(u"repinta"); }
    /// A failure that no routine trapped, where it ends.
    void failed(const RuntimeError& error);
    /// Goes on reading commands until the form is no longer visible.
    void goOnWhileOpen(Form& form);

    // For the commands.
    /// The dialog shown last of those still open, or nullptr.
    Form* openForm() const { return open_.empty() ? nullptr : open_.back(); }
    /// The same; where none is open, the one that was open last.
    Form& formToLookAt() const;
    /// The same, but it has to be open.
    Form& formToActOn() const;
    Control& control(const GuionArgument& name) const;
    /// Calls the module as the host does; a failure ends here and is observed.
    void callModule(const std::function<void()>& call);
    Person& person() { return *stage_.person; }
    ProcessState& state() { return state_; }
    /// A mistake in the present command.
    [[noreturn]] void mistake(StringView reason) const;

private:
    bool playNext();
    void leave(Form& form);
    const Guion& guion_;
    Transcript transcript_;
    std::function<void()> more_;
    std::vector<Form*> open_; ///< The one shown last at the end.
    Form* last_ = nullptr;
    Stage stage_; ///< Outlives the dialogs, which end with the state.
    ProcessState state_;
};

} // namespace zv
