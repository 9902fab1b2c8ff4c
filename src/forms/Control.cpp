#include "forms/Control.h"

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

Value Control::invoke(StringView member, Access access, Arguments& arguments)
{
    static const auto members =
        MemberTable<Control>()
            .property(u"Name", [](Control& self, const Arguments&) { return Value(self.Name()); })
            .property(u"Index",
                      [](Control& self, const Arguments&) {
                          if (self.Index() == noIndex)
                              fail(failure::noArrayElement, self.Name());
                          return Value(Long{self.Index()});
                      })
            .method(u"SetFocus",
                    [](Control& self, Arguments&) {
                        self.SetFocus();
                        return Value();
                    })
            .method(u"ZOrder", [](Control& self, Arguments&) {
                self.ZOrder();
                return Value();
            });
    return members.has(member) ? members.invoke(*this, member, access, arguments)
                               : PropertyOwner::invoke(member, access, arguments);
}

} // namespace zv
