#include "suite/Moment.h"

#include "runtime/Convert.h"

#include <algorithm>

namespace zv {

namespace {

constexpr std::size_t mostDigits = 8;

} // namespace

Moment::Moment(StringView stored) : text_(stored.substr(0, stored.find(u'+'))), begin_(momentIn(text_))
{
    if (text_.size() < stored.size())
        signs_ = std::chrono::minutes(numberIn(stored.substr(text_.size() + 1, mostDigits)).value_or(0));
}

std::chrono::seconds Moment::silence(Seconds now) const
{
    return begin_ ? now - *begin_ - signs_ : std::chrono::seconds(0);
}

String Moment::signedAt(Seconds now) const
{
    if (!begin_ || now < *begin_)
        return text_;
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(now - *begin_).count();
    return text_ + u"+" + decimalText(static_cast<Long>(std::min<std::int64_t>(minutes, 99'999'999)));
}

String Moment::shown(Seconds now) const
{
    if (!begin_)
        return text_;
    return localText(timeHere() - (now - *begin_));
}

} // namespace zv
