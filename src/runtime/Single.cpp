#include "runtime/Single.h"

#include <vector>

namespace zv {

namespace {

std::vector<std::function<void()>>& undoings()
{
    static std::vector<std::function<void()>> list;
    return list;
}

} // namespace

void onReset(std::function<void()> undo) { undoings().push_back(std::move(undo)); }

void resetSingles()
{
    while (!undoings().empty()) {
        const std::function<void()> undo = std::move(undoings().back());
        undoings().pop_back();
        undo();
    }
}

} // namespace zv
