#include "forms/ComboBox.h"

#include "runtime/Members.h"

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
    ++timesSet_;
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
    timesSet_ = 0;
    entries_ = design_;
    Control::restoreDesign();
    contentChanged();
}

const Member* ComboBox::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        property<&ComboBox::ListCount>(u"ListCount"),
        property<&ComboBox::NewIndex>(u"NewIndex"),
        property<&ComboBox::Text>(u"Text"),
        property<&ComboBox::List>(u"List"),
        property<&ComboBox::ItemData, &ComboBox::setItemData>(u"ItemData"),
        method<&ComboBox::AddItem>(u"AddItem"),
        method<&ComboBox::RemoveItem>(u"RemoveItem"),
        method<&ComboBox::Clear>(u"Clear"),
    };
    const Member* found = findMember(members, name);
    return found != nullptr ? found : Control::memberNamed(name);
}

} // namespace zv
