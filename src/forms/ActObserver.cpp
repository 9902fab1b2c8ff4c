#include "forms/ActObserver.h"

namespace zv {
namespace {

using Source = ActObserver& (*)();

Source& source()
{
    static Source registered = nullptr;
    return registered;
}

const Form*& formOfTheActInHand()
{
    static const Form* form = nullptr;
    return form;
}

/// RAII guard: the observer hears of the end whichever way the act ends.
class Told {
public:
    Told(ActObserver& observer, const PersonAct& act)
        : observer_(observer), act_(act), around_(formOfTheActInHand())
    {
        formOfTheActInHand() = &act.form;
        observer_.acting(act_);
    }
    ~Told()
    {
        formOfTheActInHand() = around_;
        observer_.acted(act_, done);
    }
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

    bool done = false;

private:
    ActObserver& observer_;
    const PersonAct& act_;
    const Form* around_;
};

} // namespace

void observeActs(ActObserver& (*observer)()) { source() = observer; }

bool tellAct(const PersonAct& act, const std::function<bool()>& run)
{
    if (source() == nullptr || formOfTheActInHand() == &act.form)
        return run();
    Told told(source()(), act);
    told.done = run();
    return told.done;
}

} // namespace zv
