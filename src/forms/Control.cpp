#include "forms/Control.h"

#include "forms/Controls.h"
#include "forms/Desktop.h"
#include "forms/Form.h"

#include <algorithm>

namespace zv {

Control::Control(Container& container, StringView typeName, StringView name, int index)
    : form_(container.containingForm()), frame_(container.asFrame()), typeName_(typeName), name_(name),
      index_(index)
{
    form_.Controls.controls_.push_back(this);
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
    return form_.Visible() && form_.Enabled();
}

void Control::SetFocus()
{
    if (!takesFocus() || !accessible())
        fail(failure::invalidCall, fullName());
    form_.moveFocus(this, false);
}

void Control::ZOrder()
{
    auto& front = form_.frontToBack_;
    front.erase(std::remove(front.begin(), front.end(), this), front.end());
    front.insert(front.begin(), this);
    contentChanged();
}

void Control::propertyChanged(const PropertyBase& property) { form_.controlChanged(*this, &property); }

void Control::contentChanged() { form_.controlChanged(*this, nullptr); }

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
