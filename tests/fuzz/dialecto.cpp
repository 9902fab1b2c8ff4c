#include "data/DataError.h"
#include "data/Dialect.h"
#include "robot/Outline.h"

#include <cstdlib>

namespace zv {
namespace {

bool holds(StringView written, const Dialect& dialect)
{
    const Outline before(written);
    try {
        String room;
        const StringView result = inDialect(written, dialect, room);
        const Outline after(result);
        const bool changesNothing = dialect.joinTexts == u"+" && dialect.deleteWithStar;
        return !before.second && !after.second && before.literals == after.literals &&
               before.kept == after.kept && (!changesNothing || result == written);
    } catch (const DataError& error) {
        return before.second && error.number() == failure::badStatement;
    }
}

} // namespace
} // namespace zv

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const zv::String written(data, data + size);
    for (const zv::StringView sign : {u"+", u"||", u"&"})
        for (const bool star : {true, false})
            if (!zv::holds(written, {.joinTexts = sign, .deleteWithStar = star}))
                std::abort();
    return 0;
}
