#pragma once

#include "forms/Person.h"
#include "journal/Draft.h"
#include "journal/Item.h"

namespace zv::journal {

/// Types a draft into an open dialog again, as a person would, through the same acts, so that every rule of
/// the dialog holds. It finds pupils, subjects, answers and rows by what they are; it presses no button that
/// stores or leaves. Messages that the dialog shows meanwhile are not shown. What somebody else wrote
/// meanwhile is not written over.
class Recovery {
public:
    /// The form is loaded and visible; the draft is of the same dialog.
    Recovery(Form& form, Person& person, const Draft& draft);

    /// Looks at every value, for which it goes from pupil to pupil and comes back; changes nothing.
    std::vector<Item> preview();
    /// Types all that has a place, then shows the pupil and the page where the person was.
    std::vector<Item> run();
    /// Those of the items that are to be kept: all that was neither stored already nor typed in.
    static std::vector<Item> left(std::vector<Item> items);

private:
    std::vector<Item> go(bool typing);
    Form& form_;
    Person& person_;
    const Draft& draft_;
};

} // namespace zv::journal
