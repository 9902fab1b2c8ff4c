#pragma once

#include "forms/Control.h"

namespace zv {

/// A drop-down list. Indexes count from 0; each entry carries a text and a number. An index out of range
/// fails with 381.
class ComboBox final : public Control {
public:
    ComboBox(Container& container, StringView name, int index = noIndex);
    ~ComboBox() override;
    bool takesFocus() const override { return true; }

    /// Index of the chosen entry, -1 for none. Raises Click on a change.
    Property<Long> ListIndex{*this, u"ListIndex", -1, [this](const Long& index) { assignListIndex(index); }};
    /// How often `ListIndex` was assigned since the form was loaded, to another entry or to the same.
    std::size_t timesSet() const { return timesSet_; }
    /// Width of the opened list in pixels; 0 is that of the box.
    Property<Long> DroppedWidth{*this, u"DroppedWidth"};
    Event<> Click;

    void AddItem(StringView text);
    void RemoveItem(Long index);
    /// Removes every entry; the choice becomes -1 without an event.
    void Clear();
    Long ListCount() const { return static_cast<Long>(entries_.size()); }
    /// Index of the last added entry; -1 when none was since Clear.
    Long NewIndex() const { return newIndex_; }
    const String& List(Long index) const { return entry(index).text; }
    Long ItemData(Long index) const { return entry(index).data; }
    void setItemData(Long index, Long data);
    /// Index of the first entry with that number, -1 if none has it.
    Long find(Long data) const;
    /// The chosen text, "" for none.
    String Text() const;

    void sealDesign() override;
    void restoreDesign() override;

protected:
    /// Beside the properties: the members above by their names.
    const Member* memberNamed(StringView name) const override;

private:
    friend class Acts;
    struct Entry {
        String text;
        Long data = 0;
    };
    const Entry& entry(Long index) const;
    void assignListIndex(Long index);

    std::vector<Entry> entries_;
    std::vector<Entry> design_;
    Long newIndex_ = -1;
    std::size_t timesSet_ = 0;
};

} // namespace zv
