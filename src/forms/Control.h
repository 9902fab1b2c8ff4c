#pragma once

#include "forms/Event.h"
#include "forms/Property.h"

#include <array>

namespace zv {

class Control;
class Form;

/// Interface of the form towards its controls (dependency inversion: Control.h needs no Form.h).
class ControlSite {
public:
    /// Registers a new control as the last of the form's `Controls`.
    virtual void entered(Control& control) = 0;
    /// Whether a person can act on the form.
    virtual bool accessible() const = 0;
    /// Moves the focus from code; a failure of the handlers propagates to the caller.
    virtual void focusOn(Control& control) = 0;
    virtual void bringToFront(Control& control) = 0;
    /// Change notification; nullptr stands for a list, cells or tabs.
    virtual void controlChanged(Control& control, const PropertyBase* property) = 0;

protected:
    ~ControlSite() = default;
};

/// Interface of what can hold controls: a form, or a frame on it.
class Container {
public:
    virtual Form& containingForm() = 0;
    virtual ControlSite& site() = 0;
    /// The frame itself, or nullptr for a form.
    virtual Control* asControl() = 0;

protected:
    ~Container() = default;
};

/// Base class of the controls. The constructor registers it in the form's `Controls`, so that their order is
/// that of declaration. Positions and sizes are twips, relative to the container.
class Control : public PropertyOwner {
public:
    static constexpr int noIndex = -1;

    ~Control() override;

    const String& Name() const { return name_; }
    /// Index in its control array, or noIndex.
    int Index() const { return index_; }
    /// Name with the index of an array in parentheses: "cmdIdioma(0)".
    String fullName() const;
    Form& form() const { return form_; }
    /// Parent frame, or nullptr when it stands on the form itself.
    Control* frame() const { return frame_; }
    /// The label that names it, recorded by layouts for screen readers; or nullptr.
    const Control* label() const { return label_; }
    void labelledBy(const Control& label) { label_ = &label; }
    /// Whether a person can act on it: visible and enabled, and so every frame around it and the form.
    bool accessible() const;
    virtual bool takesFocus() const { return false; }
    /// Moves the focus here from code: LostFocus of the old control, then GotFocus. Fails with 5 if it cannot
    /// take the focus.
    void SetFocus();
    /// Brings the control to the front of its container.
    void ZOrder();

    Property<bool> Enabled{*this, u"Enabled", true};
    Property<bool> Visible{*this, u"Visible", true};
    Property<String> Tag{*this, u"Tag"};
    Property<String> ToolTipText{*this, u"ToolTipText"};
    Property<Long> Left{*this, u"Left"};
    Property<Long> Top{*this, u"Top"};
    Property<Long> Width{*this, u"Width"};
    Property<Long> Height{*this, u"Height"};

    Event<> GotFocus;
    Event<> LostFocus;

    StringView TypeName() const override { return typeName_; }

protected:
    /// Beside the properties: Name, Index, SetFocus, ZOrder.
    const Member* memberNamed(StringView name) const override;
    ControlSite& ownSite() const { return site_; }
    Control(Container& container, StringView typeName, StringView name, int index);
    /// Change notification for the view: a list, cells or tabs changed.
    void contentChanged();

private:
    void propertyChanged(const PropertyBase& property) override;
    ControlSite& site_;
    Form& form_;
    Control* frame_;
    const Control* label_ = nullptr;
    StringView typeName_; ///< Not owned: a literal.
    String name_;
    int index_;
};

/// Control array: controls of a form that share a name; an index out of range fails with 340.
template <class C, std::size_t N>
class ControlArray {
public:
    ControlArray(Container& container, StringView name)
        : ControlArray(container, name, std::make_index_sequence<N>{})
    {}
    C& operator()(long index)
    {
        if (index < 0 || index >= static_cast<long>(N))
            fail(failure::noArrayElement, decimalText(index));
        return elements_[static_cast<std::size_t>(index)];
    }
    static constexpr int size() { return static_cast<int>(N); }
    auto begin() { return elements_.begin(); }
    auto end() { return elements_.end(); }

private:
    template <std::size_t... I>
    ControlArray(Container& container, StringView name, std::index_sequence<I...>)
        : elements_{C(container, name, static_cast<int>(I))...}
    {}
    std::array<C, N> elements_;
};

} // namespace zv
