#pragma once

#include "forms/SectionControls.h"
#include "runtime/String.h"

#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace zv {

class PropertyBase;

/// Change tracking (memento) of a section's dialog from outside: compares what each pupil showed first with
/// what he showed last. A view passes on what it hears of the model; the dialog knows nothing of it.
class UnsavedPupils {
public:
    explicit UnsavedPupils(const SectionControls& controls) : controls_(controls) {}

    /// Observer callback: a property of a control of the form changed.
    void changed(const Control& control, const PropertyBase* property);
    /// Takes down what the pupil on the screen shows. To be called when the form is shown and after each act.
    void look();
    /// Numbers of the pupils for whom a person changed something and did not change it back, in rising order.
    std::vector<int> pupils() const;

    struct Ratings {
        int given = 0;
        int all = 0;
    };
    /// Ratings on the page shown, of the pupil shown; `all` is 0 where there are none.
    Ratings onPage() const;
    /// The same of all his pages; `all` is 0 until each has been shown once, since nobody else knows.
    Ratings onAllPages() const;

private:
    /// Pupil, control, and for ratings the page and the grid's row.
    using Place = std::tuple<int, const Control*, int, int>;
    struct Shown {
        String first;
        String last;
    };
    void noteRating();
    void noteFields(bool arrived);
    void noteHeld();

    const SectionControls& controls_;
    std::map<Place, Shown> shown_;
    /// Lists of which the dialog holds no answer of this pupil: it left them as they were when he came.
    std::set<const Control*> stale_;
    std::map<const Control*, std::size_t> timesSet_; ///< Of each list, before this pupil was chosen.
    std::map<std::pair<int, int>, Ratings> pages_;   ///< Of each pupil and page, as shown last.
    int pupil_ = -1;                                 ///< The pupil to whom the fields belong.
    bool moving_ = true;                             ///< Another pupil was chosen, and fills the fields.
};

} // namespace zv
