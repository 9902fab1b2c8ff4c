#pragma once

#include "forms/Event.h"
#include "forms/Property.h"

#include <array>

namespace zv {

class Control;
class Form;

/// What a form does for its controls: the interface by which a control reaches the form that owns it.
class ControlSite {
public:
    /// A control was made: it is the last of the form's `Controls`.
    virtual void entered(Control& control) = 0;
    /// Whether a person can act on the form.
    virtual bool accessible() const = 0;
    /// Moves the focus from code; a failure of the handlers is the caller's.
    virtual void focusOn(Control& control) = 0;
    virtual void bringToFront(Control& control) = 0;
    /// nullptr: a list, cells or tabs.
    virtual void controlChanged(Control& control, const PropertyBase* property) = 0;

protected:
    ~ControlSite() = default;
};

/// What can hold controls: a form, or a frame on it.
class Container {
public:
    virtual Form& containingForm() = 0;
    virtual ControlSite& site() = 0;
    /// The frame itself, or nullptr for a form.
    virtual Control* asControl() = 0;

protected:
    ~Container() = default;
};

/// A control of a form. It enters the form's `Controls` when it is made, so that their order is that of
/// declaration. Places and sizes are twips, within the container.
class Control : public PropertyOwner {
public:
    static constexpr int noIndex = -1;

    ~Control() override;

    const String& Name() const { return name_; }
    /// Place in its control array, or noIndex.
    int Index() const { return index_; }
    /// Name with the index of an array in parentheses: "cmdIdioma(0)".
    String fullName() const;
    Form& form() const { return form_; }
    /// The frame that holds it, or nullptr when it stands on the form itself.
    Control* frame() const { return frame_; }
    /// The label that names it (layouts record it), or nullptr: for those who do not see what stands beside
    /// it.
    const Control* label() const { return label_; }
    void labelledBy(const Control& label) { label_ = &label; }
    /// Whether a person can act on it: visible and enabled, and so every frame around it and the form.
    bool accessible() const;
    virtual bool takesFocus() const { return false; }
    /// Moves the focus here from code: LostFocus of the old control, then GotFocus. Fails with 5 if it cannot
    /// have it.
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
    /// Tells the view that a list, cells or tabs changed.
    void contentChanged();

private:
    void propertyChanged(const PropertyBase& property) override;
    ControlSite& site_;
    Form& form_;
    Control* frame_;
    const Control* label_ = nullptr;
    StringView typeName_; ///< A literal.
    String name_;
    int index_;
};

/// The controls of a form that share a name; an index that is not there fails with 340.
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
