#pragma once

#include "journal/Records.h"

#include <map>

namespace zv::journal {

/// One thing that is to be done to have the draft again: a value in its place, or an act in its turn.
struct Step {
    std::optional<Change> value = {};
    bool again = false; ///< The value is to be chosen also where the dialog shows it: others follow it.
    Act act = {};
    /// Of an act that opened a dialog which changes this one's contents only: what was done there.
    std::vector<Step> inner = {};
    bool opens = false;
    bool stillOpen = false; ///< The journal ends while that dialog is open.
    std::optional<Act> closing = {};
};

/// What the acts of a journal amount to.
class Draft {
public:
    Opening opening = {};
    std::int64_t moment = 0;        ///< Of the last act; seconds since 1970, UTC.
    std::vector<Place> places = {}; ///< That the steps name.
    std::vector<Step> steps = {};   ///< In their order; of what was changed several times the last.
    View view = {};                 ///< Where the person was.
    std::vector<Act> acts = {};     ///< All that was done, as guiones tell it.
    /// The button that was being pressed when the journal ended: a save that was cut, or a dialog that was
    /// open.
    std::optional<Act> begun = {};

    /// False for a record that names a place which is not there.
    bool add(const Record& record);
    /// The first place that is the same.
    std::size_t first(std::size_t place) const { return first_[place]; }
    /// Pupils with something that was changed and not changed back.
    std::size_t pupils() const;
    /// Texts, and choices and ticks, that were changed and not changed back.
    std::size_t texts() const { return count(true); }
    std::size_t choices() const { return count(false); }
    /// Rows that were added, changed or taken out of the dialog's own list.
    std::size_t rows() const;
    /// Whether nothing was changed.
    bool empty() const { return texts() + choices() + rows() == 0; }

private:
    using Latest = std::map<std::size_t, std::size_t>;
    void add(const Act& act);
    void add(const Change& change, std::vector<Step>& to, Latest& latest) const;
    /// What each place held first and last.
    std::map<std::size_t, Change> net() const;
    std::size_t count(bool texts) const;

    std::vector<std::size_t> first_ = {}; ///< Of each place.
    Latest latest_ = {};                  ///< Step of each place, since the last act in turn.
    Latest innerLatest_ = {};             ///< The same in the open inner dialog.
};

} // namespace zv::journal
