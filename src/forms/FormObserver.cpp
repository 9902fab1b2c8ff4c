#include "forms/FormObserver.h"

#include <algorithm>
#include <vector>

namespace zv {
namespace {

using Source = FormObserver& (*)();

std::vector<Source>& sources()
{
    static std::vector<Source> registered;
    return registered;
}

} // namespace

void observeForms(FormObserver& (*observer)())
{
    if (std::ranges::find(sources(), observer) == sources().end())
        sources().push_back(observer);
}

void tellObserver(void (FormObserver::*what)(Form&), Form& form)
{
    for (const Source observer : sources())
        (observer().*what)(form);
}

} // namespace zv
