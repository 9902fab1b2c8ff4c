#pragma once

#include "forms/Person.h"
#include "forms/SectionControls.h"
#include "journal/Draft.h"
#include "journal/Item.h"
#include "journal/Quiet.h"

#include <map>

namespace zv::journal {

/// Types the steps of a draft into one form. One for the dialog, and one for each dialog that its acts open.
class Typist {
public:
    Typist(Form& form, Person& person, Quiet& quiet, const Draft& draft, bool typing);

    void follow(const std::vector<Step>& steps);
    /// Types once more what later values have changed, as long as that helps; what then still differs was
    /// refused.
    void settle();
    void show(const View& view);
    std::vector<Item> items;

private:
    struct Known {
        std::size_t item = 0;
        bool lost = false;
        bool seen = false;
    };

    void take(const Change& change, bool again);
    void type(const Change& change, bool again, Control& control, Known& known);
    Fate enter(const Place& place, const Content& after, const Content& now, Control& control);
    void act(const Step& step);
    bool perform(const Act& act, Control& control);
    void inside(Form& inner, const Step& step);
    void putAside(const Step& step, Fate fate);
    void press(const Act& closing, Form& inner);

    bool goToPupil(const Entry& pupil);
    bool goToPage(int page);
    /// The input, shown; nullptr where it, its pupil or its subject is no longer there.
    Control* reach(const Place& place);
    Control* openRating(const Place& place);
    void makeAccessible(const Control& control);
    void noteStored();
    bool otherChosen(const OptionButton& option) const;
    bool standOn(const Entry& row);
    Content contentAt(const Place& place, const Control& control) const;
    bool set(Control& control, const Content& after);

    Form& form_;
    Person& person_;
    Quiet& quiet_;
    const Draft& draft_;
    bool typing_;
    SectionControls controls_;
    String within_;
    std::map<std::size_t, Known> known_; ///< By the first place that is the same.
    /// What was stored: as the dialog showed it before anything was typed, of each pupil.
    std::map<std::pair<Long, const Control*>, Content> stored_;
    std::vector<Long> visited_;
    /// First change that the draft made to each, by the first place that is the same.
    std::map<std::size_t, Content> before_;
    bool inner_ = false;  ///< In a dialog that the draft's own one opened.
    String row_;          ///< That was clicked last.
    bool astray_ = false; ///< The row that the next acts are about is gone.
};

} // namespace zv::journal
