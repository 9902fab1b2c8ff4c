#include "forms/Control.h"

#include "runtime/Members.h"

namespace zv {

Control::Control(Container& container, StringView typeName, StringView name, int index)
    : site_(container.site()), form_(container.containingForm()), frame_(container.asControl()),
      typeName_(typeName), name_(name), index_(index)
{
    site_.entered(*this);
}
Control::~Control() = default;

String Control::fullName() const
{
    return index_ == noIndex ? name_ : name_ + u"(" + decimalText(index_) + u")";
}

bool Control::accessible() const
{
    for (const Control* at = this; at != nullptr; at = at->frame_)
        if (!at->Visible() || !at->Enabled())
            return false;
    return site_.accessible();
}

void Control::SetFocus()
{
    if (!takesFocus() || !accessible())
        fail(failure::invalidCall, fullName());
    site_.focusOn(*this);
}

void Control::ZOrder()
{
    site_.bringToFront(*this);
    contentChanged();
}

void Control::propertyChanged(const PropertyBase& property) { site_.controlChanged(*this, &property); }

void Control::contentChanged() { site_.controlChanged(*this, nullptr); }

static Long arrayIndex(const Control& control)
{
    if (control.Index() == Control::noIndex)
        fail(failure::noArrayElement, control.Name());
    return control.Index();
}

const Member* Control::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        property<&Control::Name>(u"Name"),
        property<arrayIndex>(u"Index"),
        method<&Control::SetFocus>(u"SetFocus"),
        method<&Control::ZOrder>(u"ZOrder"),
    };
    return findMember(members, name);
}

} // namespace zv
