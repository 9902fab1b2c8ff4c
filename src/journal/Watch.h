#pragma once

#include "forms/SectionControls.h"
#include "journal/Act.h"

#include <optional>

namespace zv {
class CheckBox;
class OptionButton;
class TextBox;
} // namespace zv

namespace zv::journal {

/// What an input holds. A text that the suite's helper object has escaped is given as it was typed.
Content contentOf(const Control& control);
/// The entry of a list; fails with 381 if there is none.
Entry entryOf(const ComboBox& list, Long index);
/// The row of a grid: its number, or the text of its last column where that is hidden, and what it shows.
Entry rowOf(const MSFlexGrid& grid, Long row);

/// The index of what was chosen: the same number and text, or the only entry that reads so.
std::optional<Long> indexOf(const Entry& wanted, const ComboBox& list);
std::optional<Long> indexOf(const Entry& wanted, const MSFlexGrid& grid);

/// Compares what the inputs of a form hold with what they held before, and says to whom it belongs.
class Watch {
public:
    explicit Watch(Form& form);

    /// An input that holds something else than at the last call; a rating also where its list is open.
    struct Difference {
        Place place;
        Content before;
        Content after;
    };
    /// Differences since the last call, the given control's first. What another pupil shows because he was
    /// chosen is none.
    std::vector<Difference> differences(const Control* first);
    /// What a list, an option or a tick holds that belongs to no pupil, as if it had changed; nullopt for any
    /// other control.
    std::optional<Difference> choice(const Control* control) const;
    View view() const;
    const SectionControls& controls() const { return controls_; }

private:
    struct Watched {
        Control* control = nullptr;
        Input input = Input::text;
        Content content = {};
    };
    Place placeOf(const Watched& watched) const;
    void noteSubjects();
    void addRating(std::vector<Difference>& found);
    static bool holdsStill(const Watched& watched);

    Form& form_;
    SectionControls controls_;
    std::vector<Watched> inputs_;
    View view_;
    std::vector<Entry> subjects_; ///< Of the grid's rows, as they were filled.
    Place rating_;                ///< Whose list was open at the last call.
    Content ratingContent_;
    bool ratingOpen_ = false;
};

} // namespace zv::journal
