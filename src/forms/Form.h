#pragma once

#include "forms/Control.h"
#include "forms/Picture.h"

namespace zv {

/// Shapes of the mouse pointer over a form.
namespace pointer {
inline constexpr Integer standard = 0;
inline constexpr Integer hourglass = 11;
} // namespace pointer

/// Collection of a form's controls in their order. Late-bound: Count, Item(position from 0).
class ControlList final : public Object {
public:
    auto begin() const { return controls_.begin(); }
    auto end() const { return controls_.end(); }
    std::size_t Count() const { return controls_.size(); }

    /// Fails with 9 if there is none at that place.
    Control& Item(Long position) const;

    StringView TypeName() const override { return u"Controls"; }

protected:
    const Member* memberNamed(StringView name) const override;

private:
    friend class Form;
    std::vector<Control*> controls_;
};

/// Base class of the modal dialogs: model of the window, and life cycle. An instance is single and lives
/// until the process ends; each Show loads it afresh if it is unloaded.
class Form : public PropertyOwner, public Container, private ControlSite {
public:
    ~Form() override;
    const String& Name() const { return name_; }

    Property<String> Caption{*this, u"Caption"};
    Property<String> Tag{*this, u"Tag"};
    Property<bool> Enabled{*this, u"Enabled", true};
    Property<bool> Visible{*this, u"Visible", false};
    /// One of `pointer`.
    Property<Integer> MousePointer{*this, u"MousePointer"};
    /// Twips, the frame of the window not counted.
    Property<Long> Width{*this, u"Width"};
    Property<Long> Height{*this, u"Height"};
    /// "B" when another user holds the row's registration.
    Property<String> MarcaBloqueo{*this, u"MarcaBloqueo"};
    Picture Icon;
    ControlList Controls;

    bool loaded() const { return loaded_; }
    /// Restores the design state and runs Form_Load. A failure of Form_Load leaves the form unloaded and
    /// propagates. Does nothing if the form is loaded.
    void Load();
    /// Loads if need be, makes the form visible, runs Form_Activate, and blocks in the modal loop until the
    /// form is hidden or unloaded.
    void Show();
    void Hide();
    /// Runs Form_Unload and ends the load, even if Form_Unload fails; that failure then propagates. Does
    /// nothing if the form is not loaded.
    void Unload();

    /// The control with the focus, or nullptr.
    Control* ActiveControl() const { return focus_; }
    /// Controls that were brought to the front, the last one first.
    const std::vector<Control*>& frontToBack() const { return frontToBack_; }
    /// Lookup by name (and index), or nullptr. Does not load the form.
    Control* find(StringView name, int index = Control::noIndex) const;
    /// Lookup for code outside the dialog: loads the form as a side effect. Fails with 438 if there is none
    /// of that name.
    Control& reach(StringView name, int index = Control::noIndex);

    /// Error boundary of one event of a person's act: a failure that no routine trapped is shown, the pointer
    /// goes back to the default, and a form that the handler had disabled is enabled again. Without a desktop
    /// it propagates.
    void guarded(const std::function<void()>& event);

    StringView TypeName() const override { return name_; }

    Form& containingForm() override { return *this; }
    ControlSite& site() override { return *this; }
    Control* asControl() override { return nullptr; }

protected:
    explicit Form(StringView name);
    /// Beside the properties: Name, Controls, Show, Hide.
    const Member* memberNamed(StringView name) const override;

    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_Click() {}
    virtual void Form_Unload() {}

    /// Binds a member function of the dialog to an event of a control.
    template <class F, class... A>
    void on(Event<A...>& event, void (F::*handler)(A...))
    {
        event.bind([self = static_cast<F*>(this), handler](A... args) { (self->*handler)(args...); });
    }
    /// The same for each element of a control array: the handler gets the element's index first.
    template <class C, std::size_t N, class F, class... A>
    void on(ControlArray<C, N>& array, Event<A...> C::*event, void (F::*handler)(int, A...))
    {
        for (C& element : array)
            (element.*event)
                .bind([self = static_cast<F*>(this), handler, index = element.Index()](A... args) {
                    (self->*handler)(index, args...);
                });
    }

private:
    friend class Acts;
    void entered(Control& control) override { Controls.controls_.push_back(&control); }
    bool accessible() const override { return Visible() && Enabled(); }
    void focusOn(Control& control) override { moveFocus(&control, false); }
    void bringToFront(Control& control) override;
    void propertyChanged(const PropertyBase& property) override;
    void controlChanged(Control& control, const PropertyBase* property) override;
    /// Moves the focus: LostFocus of the old control, GotFocus of the new one. By a person, each of the two
    /// events has an error boundary of its own; by code, a failure propagates.
    void moveFocus(Control* to, bool byPerson);
    /// Moves the focus on when its control has become inaccessible.
    void settleFocus();
    /// Tab order, cyclic: the control after (before) that one that can take the focus; nullptr starts at the
    /// end.
    Control* nextFocus(const Control* from, bool forward) const;

    String name_;
    bool loaded_ = false;
    bool sealed_ = false;
    bool unloading_ = false;
    Control* focus_ = nullptr;
    std::vector<Control*> frontToBack_; ///< Controls that were brought to the front, the last one first.
};

/// RAII guard: the hourglass over a form while a routine works, then the default pointer.
class Hourglass {
public:
    explicit Hourglass(Form& form) : form_(form) { form_.MousePointer = pointer::hourglass; }
    ~Hourglass() { form_.MousePointer = pointer::standard; }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

private:
    Form& form_;
};

} // namespace zv
