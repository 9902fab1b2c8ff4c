#include "forms/TabStrip.h"

#include "runtime/Members.h"

#include <tuple>

namespace zv {

namespace {

/// Late-bound collection of a strip's tabs.
class TabCollection final : public Object {
public:
    explicit TabCollection(TabStrip& strip) : strip_(strip) {}
    StringView TypeName() const override { return u"Tabs"; }
    Long Count() const { return strip_.tabCount(); }
    StripTab& Item(Long index) const { return strip_.Tabs(index); }

protected:
    const Member* memberNamed(StringView name) const override
    {
        static constexpr Member members[] = {
            property<&TabCollection::Count>(u"Count"),
            property<&TabCollection::Item>(u"Item"),
        };
        return findMember(members, name);
    }

private:
    TabStrip& strip_;
};

Value tabs(TabStrip& strip, const std::optional<Long>& index)
{
    return index ? Value(uncounted(strip.Tabs(*index))) : Value(std::make_shared<TabCollection>(strip));
}

bool isSelected(TabStrip& strip, Long index) { return strip.Tabs(index).Selected(); }

} // namespace

TabStrip::TabStrip(Container& container, StringView name, int index)
    : Control(container, u"TabStrip", name, index)
{}
TabStrip::~TabStrip() = default;

StripTab::StripTab(TabStrip& strip, Long index, String caption, String toolTip)
    : Caption(std::move(caption)), ToolTipText(std::move(toolTip)), strip_(strip), index_(index)
{}

bool StripTab::Selected() const { return strip_.selected_() == index_; }

void StripTab::select(bool on)
{
    if (!on)
        return;
    strip_.selected_.store(index_);
    strip_.Click.raise();
}

void StripTab::setCaption(const String& caption)
{
    Caption = caption;
    strip_.tabChanged();
}

const Member* StripTab::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        property<&StripTab::Caption, &StripTab::setCaption>(u"Caption"),
        field<&StripTab::ToolTipText>(u"ToolTipText"),
        property<&StripTab::Index>(u"Index"),
        property<&StripTab::Selected, &StripTab::select>(u"Selected"),
    };
    return findMember(members, name);
}

void TabStrip::addTab(StringView caption, StringView toolTip)
{
    tabs_.push_back(std::make_unique<StripTab>(*this, tabCount() + 1, String(caption), String(toolTip)));
    design_.emplace_back(caption, toolTip);
}

StripTab& TabStrip::Tabs(Long index)
{
    if (index < 1 || index > tabCount())
        fail(failure::listIndexOutside, decimalText(index));
    return *tabs_[static_cast<std::size_t>(index - 1)];
}

void TabStrip::restoreDesign()
{
    for (std::size_t i = 0; i < tabs_.size(); ++i)
        std::tie(tabs_[i]->Caption, tabs_[i]->ToolTipText) = design_[i];
    Control::restoreDesign();
    contentChanged();
}

const Member* TabStrip::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        property<tabs>(u"Tabs"),
        property<&TabStrip::SelectedItem>(u"SelectedItem"),
        property<isSelected>(u"Selected"),
    };
    const Member* found = findMember(members, name);
    return found != nullptr ? found : Control::memberNamed(name);
}

} // namespace zv
