#pragma once

#include "forms/Desktop.h"
#include "forms/Person.h"
#include "robot/ProcessState.h"
#include "robot/Transcript.h"

namespace zv {

class Play;

/// Where a guion is played: a desktop that shows the dialogs and reports to the play what is seen, and the
/// person who acts at it.
struct Stage {
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<Person> person;
};
using StageMaker = std::function<Stage(Play&)>;

/// Interpreter of one guion: runs command after command and records what is observed. Re-entrant: a modal
/// dialog runs within the command that opened it, and the next commands within the dialog's event loop.
class Play {
public:
    Play(const Guion& guion, const School& school, const StageMaker& stage);

    /// Plays the whole guion. Fails with a GuionError; so does one that ends with a dialog open.
    void run();
    const Transcript& transcript() const { return transcript_; }
    /// For a guion that is generated while it is played: sets a callback for when every command has been
    /// read, also while a dialog is open. If it appends none, the guion ends.
    void writeOn(std::function<void()> more) { more_ = std::move(more); }

    /// For a host that opens the dialogs itself: skips the first command, which stands for that.
    void begin() { transcript_.begin(); }

    // Callbacks of the desktop: record what a person would notice.
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
    /// Modal loop: runs commands until the form is no longer visible.
    void goOnWhileOpen(Form& form);

    // For the commands.
    /// Top of the stack of open dialogs, or nullptr.
    Form* openForm() const { return open_.empty() ? nullptr : open_.back(); }
    /// The same; without one, the dialog closed last.
    Form& formToLookAt() const;
    /// The same; fails with a GuionError without one.
    Form& formToActOn() const;
    Control& control(const GuionArgument& name) const;
    /// Calls the module as a host does: catches a failure and records it.
    void callModule(const std::function<void()>& call);
    Person& person() { return *stage_.person; }
    ProcessState& state() { return state_; }
    /// Fails with a GuionError at the current command.
    [[noreturn]] void mistake(StringView reason) const;

private:
    bool playNext();
    void leave(Form& form);
    const Guion& guion_;
    Transcript transcript_;
    std::function<void()> more_;
    std::vector<Form*> open_; ///< Stack, the one shown last on top.
    Form* last_ = nullptr;
    Stage stage_; ///< Before state_, whose destructor ends the dialogs that are shown here.
    ProcessState state_;
};

} // namespace zv
