#pragma once

#include "forms/Control.h"

namespace zv {

class TabStrip;

/// One tab of a strip. Late-bound: Caption, ToolTipText, Index, Selected.
class StripTab final : public Object {
public:
    StripTab(TabStrip& strip, Long index, String caption, String toolTip);

    /// Index in the strip, from 1.
    Long Index() const { return index_; }
    bool Selected() const;
    /// True always raises the strip's Click, even where the tab is selected already.
    void select(bool on = true);
    void setCaption(const String& caption);
    String Caption;
    String ToolTipText;

    StringView TypeName() const override { return u"Tab"; }

protected:
    const Member* memberNamed(StringView name) const override;

private:
    TabStrip& strip_;
    Long index_;
};

/// A strip of tabs; indexes count from 1, and one out of range fails with 381.
class TabStrip final : public Control {
public:
    TabStrip(Container& container, StringView name, int index = noIndex);
    ~TabStrip() override;
    bool takesFocus() const override { return true; }

    /// Adds a tab, at design time only. The first one is selected.
    void addTab(StringView caption, StringView toolTip = {});
    StripTab& Tabs(Long index);
    Long tabCount() const { return static_cast<Long>(tabs_.size()); }
    StripTab& SelectedItem() { return Tabs(selected_()); }
    Event<> Click;

    void restoreDesign() override;

protected:
    /// Beside the properties: Tabs (with Count and Item, or with the number of a tab), SelectedItem,
    /// Selected(n).
    const Member* memberNamed(StringView name) const override;

private:
    friend class StripTab;
    void tabChanged() { contentChanged(); }
    Property<Long> selected_{*this, u"SelectedIndex", 1, [this](const Long& tab) { Tabs(tab).select(); }};
    std::vector<std::unique_ptr<StripTab>> tabs_;
    std::vector<std::pair<String, String>> design_; ///< Caption and tip of each tab.
};

} // namespace zv
