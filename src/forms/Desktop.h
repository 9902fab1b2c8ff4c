#pragma once

#include "runtime/Errors.h"
#include "runtime/Value.h"

#include <functional>

namespace zv {

class ComboBox;
class Form;
class PropertyBase;
class PropertyOwner;

/// The seam to a screen: all that dialogs need of one.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// A form became visible, after Form_Load and before Form_Activate.
    virtual void opened(Form& form) = 0;
    /// Lets a person act on the form until it is no longer visible.
    virtual void runModal(Form& form) = 0;
    /// A form was unloaded, after Form_Unload.
    virtual void closed(Form& form) = 0;
    virtual void messageBox(StringView prompt, Integer flags, StringView title) = 0;
    virtual void beep() = 0;
    /// Lets the screen repaint.
    virtual void doEvents() = 0;
    /// An event handler failed and no routine trapped it: shows number and text.
    virtual void handlerFailed(const RuntimeError& error) = 0;
    /// Width of a text in the form's font, in twips.
    virtual Long textWidth(StringView text);
    /// A property, the list or the cells of a control changed.
    virtual void changed(PropertyOwner& owner, const PropertyBase* property);
};

/// The desktop in use. Using one where none was set fails with 5.
Desktop& desktop();
bool hasDesktop();
/// nullptr takes it away. The caller keeps it alive.
void useDesktop(Desktop* desktop);

/// What the program does now and then while a dialog waits for a person.
void onWaiting(std::function<void()> act);
/// Does it. A desktop whose person takes his time calls this about once a minute, between two events.
void waiting();

/// Where the suite's help file stands, for a person who asks for help in a dialog; "" if nobody said so.
String helpFile();
/// Who says it.
void onHelp(std::function<String()> file);

/// Signs of a message box.
namespace sign {
inline constexpr Integer critical = 16;
inline constexpr Integer exclamation = 48;
inline constexpr Integer information = 64;
} // namespace sign

/// Where nobody can read it, it fails: with what Err holds, which is what it would tell of, and its own
/// words.
void MsgBox(StringView prompt, Integer flags, StringView title);
/// Where there is no desktop, nothing sounds, and nothing is repainted.
void Beep();
void DoEvents();
/// Queues keys, "{END}" for the End key and plain characters, to follow after the key in hand.
void SendKeys(StringView keys);

} // namespace zv
