#pragma once

#include "forms/Acts.h"
#include "forms/SectionControls.h"

namespace zv {

/// Macros: one key for what takes a person several, each composed of acts that he could do one by one. All
/// give whether they are for this form and this control; where they are not, the key keeps its plain meaning.
class SectionKeys {
public:
    explicit SectionKeys(const SectionControls& controls) : controls_(controls) {}

    /// Shows the page so many further, cyclic, and goes to its first field.
    bool goToPage(Acts& acts, Long step);
    /// Shows the next pupil (-1: the one before) on the same page, and comes back to the same field.
    bool goToPupil(Acts& acts, Long step);
    /// Whether the focus is in a rating's cell or in the list over it.
    bool atRating() const;
    /// Type-ahead in a rating's cell or in the list over it: what was typed is sought at the start of the
    /// answers' numbers and texts. The only one that fits, or the one with just that number, is chosen, and
    /// the cell below is next; among several the list stays open for more letters.
    bool rate(Acts& acts, StringView typed);
    /// Chooses "no answer", and goes down.
    bool clear(Acts& acts);
    /// Chooses what the cell above shows, and goes down. Nothing where two answers read the same.
    bool repeatAbove(Acts& acts);
    /// From the list over a cell back to the grid: to the cell below, or to the same one.
    bool leaveList(Acts& acts, bool down);

private:
    bool inList() const;
    bool openList(Acts& acts);
    bool choose(Acts& acts, Long entry);
    void toRatingCell(Acts& acts) const;
    std::vector<Long> matches(StringView typed) const;

    const SectionControls& controls_;
    String typed_; ///< Letters so far, while the list is open.
};

} // namespace zv
