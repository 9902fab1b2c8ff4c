#include "com/Failure.h"

#include "com/Text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zv::com {

namespace {

constexpr std::int32_t largestNumber = 0xFFFF;

/// Mapping of the interface's own result codes to error numbers of the language.
struct KnownResult {
    ZvResult result;
    std::int32_t number;
};
constexpr KnownResult knownResults[] = {
    {ZV_DISP_UNKNOWNNAME, failure::memberMissing},
    {ZV_DISP_MEMBERNOTFOUND, failure::memberMissing},
    {ZV_DISP_TYPEMISMATCH, failure::typeMismatch},
    {ZV_DISP_OVERFLOW, failure::overflow},
    {ZV_DISP_BADPARAMCOUNT, failure::argumentCount},
    {ZV_DISP_PARAMNOTFOUND, failure::argumentCount},
    {ZV_DISP_PARAMNOTOPTIONAL, failure::argumentCount},
    {ZV_DISP_BADINDEX, failure::indexOutside},
    {ZV_E_INVALIDARG, failure::invalidCall},
    {ZV_E_POINTER, failure::invalidCall},
};

std::int32_t numberOf(ZvResult result)
{
    const auto* known = std::ranges::find(knownResults, result, &KnownResult::result);
    if (known != std::end(knownResults))
        return known->number;
    const bool own = result > ZV_FAILURE_BASE && result <= ZV_FAILURE_BASE + largestNumber;
    return own ? result - ZV_FAILURE_BASE : result;
}

String taken(ZvBstr& text)
{
    String result = textOf(text);
    zv_bstr_free(std::exchange(text, nullptr));
    return result;
}

} // namespace

ZvResult resultOf(std::int32_t number)
{
    if (number > 0 && number <= largestNumber)
        return ZV_FAILURE_BASE + number;
    return number < 0 ? number : static_cast<ZvResult>(ZV_E_UNEXPECTED);
}

void describe(ZvException& exception, std::int32_t number, StringView text)
{
    exception = {};
    exception.source = newText(u"ZVConfiguracion");
    exception.description = newText(text);
    exception.result = resultOf(number);
}

void failAs(ZvResult result, ZvException& exception, StringView member)
{
    std::int32_t number = numberOf(result);
    if (result == ZV_DISP_EXCEPTION) {
        if (exception.fill != nullptr)
            exception.fill(&exception);
        number = exception.code != 0 ? exception.code : numberOf(exception.result);
        // A failure with number 0 would read as success in Err.
        if (number == 0)
            number = failure::invalidCall;
    }
    String text = taken(exception.description);
    taken(exception.source);
    taken(exception.helpFile);
    if (text.empty())
        fail(number, member);
    throw RuntimeError(number, std::move(text));
}

} // namespace zv::com
