#pragma once

#include "runtime/Errors.h"
#include "runtime/Value.h"

#include <functional>

namespace zv {

class ComboBox;
class Form;
class PropertyBase;
class PropertyOwner;

/// Port to a screen (dependency inversion): all that dialogs need of one.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// A form became visible, after Form_Load and before Form_Activate.
    virtual void opened(Form& form) = 0;
    /// Modal loop: lets a person act on the form until it is no longer visible.
    virtual void runModal(Form& form) = 0;
    /// A form was unloaded, after Form_Unload.
    virtual void closed(Form& form) = 0;
    virtual void messageBox(StringView prompt, Integer flags, StringView title) = 0;
    virtual void beep() = 0;
    /// Lets the screen repaint.
    virtual void doEvents() = 0;
    /// A statement of a dialog has returned. A screen may show how far a long save has come, but handles no
    /// event: the routine is between two statements.
    virtual void working() {}
    /// Last-resort handler of a failure in an event that no routine trapped: shows number and text.
    virtual void handlerFailed(const RuntimeError& error) = 0;
    /// Width of a text in the form's font, in twips.
    virtual Long textWidth(StringView text);
    /// Observer callback: a property, the list or the cells (nullptr) of a control changed.
    virtual void changed(PropertyOwner& owner, const PropertyBase* property);
};

/// The process's current desktop; fails with 5 where none was set.
Desktop& desktop();
bool hasDesktop();
/// Sets the current desktop, which the caller keeps alive; nullptr removes it.
void useDesktop(Desktop* desktop);

/// RAII guard: the dialogs open there as long as it lives, and nowhere afterwards.
class UsingDesktop {
public:
    explicit UsingDesktop(Desktop& screen) { useDesktop(&screen); }
    UsingDesktop(const UsingDesktop&) = delete;
    UsingDesktop& operator=(const UsingDesktop&) = delete;
    ~UsingDesktop() { useDesktop(nullptr); }
};

/// Registers a callback for the time that a dialog waits for a person: a heartbeat, say.
void onWaiting(std::function<void()> act);
/// Runs that callback. A desktop whose person takes his time calls this about once a minute, between two
/// events.
void waiting();

/// Path of the suite's help file, for a person who asks for help in a dialog; "" without a registered
/// callback.
String helpFile();
/// Registers the callback that gives that path, so that this floor need not know whose it is.
void onHelp(std::function<String()> file);

/// Signs of a message box.
namespace sign {
inline constexpr Integer critical = 16;
inline constexpr Integer exclamation = 48;
inline constexpr Integer information = 64;
} // namespace sign

/// Without a desktop it fails: with the failure in Err, which the message would report, or else with 5; the
/// description adds the message.
void MsgBox(StringView prompt, Integer flags, StringView title);
/// No-ops without a desktop.
void Beep();
void DoEvents();
/// Queues keys, "{END}" for the End key and plain characters, which are replayed after the key in hand.
void SendKeys(StringView keys);

} // namespace zv
