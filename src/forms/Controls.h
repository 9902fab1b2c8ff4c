#pragma once

#include "forms/Control.h"

namespace zv {

/// The basic controls: of each kind the properties, methods and events that dialogs use, all of them
/// late-bound as well.

class Label final : public Control {
public:
    Label(Container& container, StringView name, int index = noIndex);
    ~Label() override;
    Property<String> Caption{*this, u"Caption"};
    /// Marker: "*" on the label of a mandatory field.
    Property<String> Marca{*this, u"Marca"};
    /// Whether the view draws the sign of a mandatory field.
    Property<bool> Obligatorio{*this, u"Obligatorio"};
};

class TextBox final : public Control {
public:
    TextBox(Container& container, StringView name, int index = noIndex);
    ~TextBox() override;
    bool takesFocus() const override { return true; }

    /// Cache of the text as the suite's helper object escaped it; any later change of the text empties it.
    Property<String> TextoDoblado{*this, u"TextoDoblado"};
    /// Assigning truncates: at the first character of code 0, and at MaxLength. Moves the caret to the start;
    /// raises Change if the text differs.
    Property<String> Text{*this, u"Text", {}, [this](const String& text) { assignText(text); }};
    /// In 16-bit units; 0 is no limit.
    Property<Long> MaxLength{*this, u"MaxLength"};
    Property<Long> SelStart{*this, u"SelStart", 0, [this](const Long& start) { assignSelStart(start); }};
    Property<Long> SelLength{*this, u"SelLength", 0, [this](const Long& length) { assignSelLength(length); }};
    /// Design only: several lines with a vertical scroll bar.
    Property<bool> MultiLine{*this, u"MultiLine"};
    Property<bool> RightAligned{*this, u"RightAligned"};

    Event<> Change;
    Event<Integer&> KeyDown; ///< KeyCode; 0 discards the key.
    Event<Integer&>
        KeyPress; ///< KeyAscii: the character's 16-bit unit; 0 discards the key, another number changes it.

private:
    friend class Acts;
    void assignText(const String& text);
    /// Replaces the selection, the caret behind it; raises Change if the text differs. The new text is
    /// truncated to what fits under MaxLength.
    void replaceSelection(StringView text);
    /// Replaces the selection by one typed character, whole or not at all: a full box refuses it.
    void typeText(StringView text);
    /// Caret positions one character back and forward; a pair of surrogates is one character.
    Long stepBefore(Long at) const;
    Long stepAfter(Long at) const;
    /// Stores text and caret, then raises Change if the text differs.
    void change(const String& text, Long caret);
    void assignSelStart(Long start);
    void assignSelLength(Long length);
};

class CommandButton final : public Control {
public:
    CommandButton(Container& container, StringView name, int index = noIndex);
    ~CommandButton() override;
    bool takesFocus() const override { return true; }
    Property<String> Caption{*this, u"Caption"};
    /// Exclusive roles: assigning True takes the role from the form's other buttons.
    Property<bool> Default{*this, u"Default", false, [this](const bool& on) { assignRole(Default, on); }};
    Property<bool> Cancel{*this, u"Cancel", false, [this](const bool& on) { assignRole(Cancel, on); }};
    /// Assigning True presses the button: Click, with the focus left where it is. Always reads False.
    Property<bool> Value{*this, u"Value", false, [this](const bool& on) { press(on); }};
    Event<> Click;

private:
    void assignRole(Property<bool>& role, bool on);
    void press(bool on);
};

class CheckBox final : public Control {
public:
    CheckBox(Container& container, StringView name, int index = noIndex);
    ~CheckBox() override;
    bool takesFocus() const override { return true; }
    Property<String> Caption{*this, u"Caption"};
    /// 0 or 1; raises Click on a change. Another number fails with 380.
    Property<Integer> Value{*this, u"Value", 0, [this](const Integer& value) { assignValue(value); }};
    Event<> Click;
    Event<> MouseDown;

private:
    void assignValue(Integer value);
};

class OptionButton final : public Control {
public:
    OptionButton(Container& container, StringView name, int index = noIndex);
    ~OptionButton() override;
    bool takesFocus() const override { return true; }
    Property<String> Caption{*this, u"Caption"};
    /// Radio group: when it becomes True its neighbours in the same container become False first, then Click
    /// is raised.
    Property<bool> Value{*this, u"Value", false, [this](const bool& on) { assignValue(on); }};
    Event<> Click;

private:
    void assignValue(bool on);
};

class Frame final : public Control, public Container {
public:
    Frame(Container& container, StringView name, int index = noIndex);
    ~Frame() override;
    Form& containingForm() override { return form(); }
    ControlSite& site() override { return ownSite(); }
    Control* asControl() override { return this; }
    Property<String> Caption{*this, u"Caption"};
    /// Design only: False for a frame that only groups.
    Property<bool> Border{*this, u"Border", true};
};

} // namespace zv
