#include "forms/ComboBox.h"

#include <algorithm>

namespace zv {

ComboBox::ComboBox(Container& container, StringView name, int index)
    : Control(container, u"ComboBox", name, index)
{}
ComboBox::~ComboBox() = default;

const ComboBox::Entry& ComboBox::entry(Long index) const
{
    if (index < 0 || index >= ListCount())
        fail(failure::listIndexOutside, decimalText(index));
    return entries_[static_cast<std::size_t>(index)];
}

void ComboBox::AddItem(StringView text)
{
    entries_.push_back({String(text), 0});
    newIndex_ = ListCount() - 1;
    contentChanged();
}

void ComboBox::RemoveItem(Long index)
{
    entry(index);
    entries_.erase(entries_.begin() + index);
    newIndex_ = -1;
    if (ListIndex() == index)
        ListIndex.store(-1);
    else if (ListIndex() > index)
        ListIndex.store(ListIndex() - 1);
    contentChanged();
}

void ComboBox::Clear()
{
    entries_.clear();
    newIndex_ = -1;
    ListIndex.store(-1);
    contentChanged();
}

void ComboBox::setItemData(Long index, Long data)
{
    entry(index);
    entries_[static_cast<std::size_t>(index)].data = data;
}

Long ComboBox::find(Long data) const
{
    const auto found = std::ranges::find(entries_, data, &Entry::data);
    return found == entries_.end() ? -1 : static_cast<Long>(found - entries_.begin());
}

String ComboBox::Text() const { return ListIndex() < 0 ? String() : List(ListIndex()); }

void ComboBox::assignListIndex(Long index)
{
    if (index != -1)
        entry(index);
    if (index == ListIndex())
        return;
    ListIndex.store(index);
    Click.raise();
}

void ComboBox::sealDesign()
{
    Control::sealDesign();
    design_ = entries_;
}

void ComboBox::restoreDesign()
{
    Clear();
    entries_ = design_;
    Control::restoreDesign();
    contentChanged();
}

Value ComboBox::invoke(StringView member, Access access, Arguments& arguments)
{
    static const auto members =
        MemberTable<ComboBox>()
            .property(u"ListCount", [](ComboBox& self, const Arguments&) { return Value(self.ListCount()); })
            .property(u"NewIndex", [](ComboBox& self, const Arguments&) { return Value(self.NewIndex()); })
            .property(u"Text", [](ComboBox& self, const Arguments&) { return Value(self.Text()); })
            .property(u"List", [](ComboBox& self,
                                  const Arguments& a) { return Value(self.List(CLng(argument(a, 0)))); })
            .property(
                u"ItemData",
                [](ComboBox& self, const Arguments& a) { return Value(self.ItemData(CLng(argument(a, 0)))); },
                [](ComboBox& self, const Arguments& a) {
                    self.setItemData(CLng(argument(a, 0)), CLng(argument(a, 1)));
                })
            .method(u"AddItem",
                    [](ComboBox& self, Arguments& a) {
                        self.AddItem(CStr(argument(a, 0)));
                        return Value();
                    })
            .method(u"RemoveItem",
                    [](ComboBox& self, Arguments& a) {
                        self.RemoveItem(CLng(argument(a, 0)));
                        return Value();
                    })
            .method(u"Clear", [](ComboBox& self, Arguments&) {
                self.Clear();
                return Value();
            });
    return members.has(member) ? members.invoke(*this, member, access, arguments)
                               : Control::invoke(member, access, arguments);
}

} // namespace zv
