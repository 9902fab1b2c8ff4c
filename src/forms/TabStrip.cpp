#include "forms/TabStrip.h"

#include <tuple>

namespace zv {

namespace {

/// Late-bound collection of a strip's tabs.
class TabCollection final : public Object {
public:
    explicit TabCollection(TabStrip& strip) : strip_(strip) {}
    StringView TypeName() const override { return u"Tabs"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        static const auto members =
            MemberTable<TabCollection>()
                .property(u"Count",
                          [](TabCollection& self, const Arguments&) { return Value(self.strip_.tabCount()); })
                .property(u"Item", [](TabCollection& self, const Arguments& a) {
                    return Value(uncounted(self.strip_.Tabs(CLng(argument(a, 0)))));
                });
        return members.invoke(*this, member, access, arguments);
    }

private:
    TabStrip& strip_;
};

} // namespace

TabStrip::TabStrip(Container& container, StringView name, int index)
    : Control(container, u"TabStrip", name, index)
{}
TabStrip::~TabStrip() = default;

StripTab::StripTab(TabStrip& strip, Long index, String caption, String toolTip)
    : Caption(std::move(caption)), ToolTipText(std::move(toolTip)), strip_(strip), index_(index)
{}

bool StripTab::Selected() const { return strip_.selected_() == index_; }

void StripTab::select()
{
    strip_.selected_.store(index_);
    strip_.Click.raise();
}

Value StripTab::invoke(StringView member, Access access, Arguments& arguments)
{
    static const auto members =
        MemberTable<StripTab>()
            .property(
                u"Caption", [](StripTab& self, const Arguments&) { return Value(self.Caption); },
                [](StripTab& self, const Arguments& a) {
                    self.Caption = CStr(a.back());
                    self.strip_.tabChanged();
                })
            .field(u"ToolTipText", &StripTab::ToolTipText, CStr)
            .property(u"Index", [](StripTab& self, const Arguments&) { return Value(self.Index()); })
            .property(
                u"Selected", [](StripTab& self, const Arguments&) { return Value(self.Selected()); },
                [](StripTab& self, const Arguments& a) {
                    if (CBool(a.back()))
                        self.select();
                });
    return members.invoke(*this, member, access, arguments);
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

Value TabStrip::invoke(StringView member, Access access, Arguments& arguments)
{
    static const auto members =
        MemberTable<TabStrip>()
            .property(u"Tabs",
                      [](TabStrip& self, const Arguments& a) {
                          return a.empty() ? Value(std::make_shared<TabCollection>(self))
                                           : Value(uncounted(self.Tabs(CLng(a.front()))));
                      })
            .property(u"SelectedItem",
                      [](TabStrip& self, const Arguments&) { return Value(uncounted(self.SelectedItem())); })
            .property(u"Selected", [](TabStrip& self, const Arguments& a) {
                return Value(self.Tabs(CLng(argument(a, 0))).Selected());
            });
    return members.has(member) ? members.invoke(*this, member, access, arguments)
                               : Control::invoke(member, access, arguments);
}

} // namespace zv
