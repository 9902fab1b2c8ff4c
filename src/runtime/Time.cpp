#include "runtime/Time.h"

#include "runtime/Convert.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace zv {

namespace {

/// Not by the system's clock, whose nanoseconds end in the year 2262.
std::time_t timeOf(Seconds time) { return static_cast<std::time_t>(time.time_since_epoch().count()); }

String timeText(const std::tm* time)
{
    char text[sizeof "2024-09-12 08:30:00"] = "";
    if (time)
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", time);
    return fromUtf8(text);
}

/// Day of a text in the format of momentText(): "12/9/2024".
String dayTold(StringView text)
{
    const auto number = [&](std::size_t from, std::size_t length) {
        return decimalText(numberIn(text.substr(from, length)).value_or(0));
    };
    return number(8, 2) + u"/" + number(5, 2) + u"/" + number(0, 4);
}

} // namespace

std::optional<int> numberIn(StringView digits)
{
    if (digits.empty() || digits.size() > 9 ||
        !std::ranges::all_of(digits, [](char16_t c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    int number = 0;
    for (const char16_t c : digits)
        number = number * 10 + (c - u'0');
    return number;
}

Seconds timeHere() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

String momentText(Seconds time)
{
    const std::time_t seconds = timeOf(time);
    return timeText(std::gmtime(&seconds));
}

String momentNow()
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    const auto whole = std::chrono::floor<std::chrono::seconds>(now);
    const String thousandths = decimalText(static_cast<Long>(1000 + (now - whole).count()));
    return momentText(whole) + u"." + thousandths.substr(1);
}

String localText(Seconds time)
{
    const std::time_t seconds = timeOf(time);
    return timeText(std::localtime(&seconds));
}

std::optional<Seconds> momentIn(StringView text)
{
    struct Digits {
        std::size_t from, count;
    };
    constexpr std::array<Digits, 6> layout{{{0, 4}, {5, 2}, {8, 2}, {11, 2}, {14, 2}, {17, 2}}};
    std::array<int, layout.size()> part{};
    if (text.size() < layout.back().from + layout.back().count)
        return std::nullopt;
    for (std::size_t i = 0; i < part.size(); ++i) {
        const auto number = numberIn(text.substr(layout[i].from, layout[i].count));
        if (!number)
            return std::nullopt;
        part[i] = *number;
    }
    const std::chrono::year_month_day day{std::chrono::year(part[0]),
                                          std::chrono::month(static_cast<unsigned>(part[1])),
                                          std::chrono::day(static_cast<unsigned>(part[2]))};
    if (!day.ok())
        return std::nullopt;
    return std::chrono::sys_days(day) + std::chrono::hours(part[3]) + std::chrono::minutes(part[4]) +
           std::chrono::seconds(part[5]);
}

std::optional<Seconds> localMomentIn(StringView text)
{
    const auto wanted = momentIn(text);
    // Nor what comes to a moment only by being counted on, as the hour 25 does.
    if (!wanted || momentText(*wanted) != text)
        return std::nullopt;
    // By trial: the offset of about then, and with it that of then.
    Seconds result = *wanted;
    for (int round = 0; round < 2; ++round)
        if (const auto shown = momentIn(localText(result)))
            result += *wanted - *shown;
    return result;
}

String whenTold(Seconds time, Seconds now)
{
    const String local = localText(time);
    const String hour = decimalText(numberIn(local.substr(11, 2)).value_or(0)) + local.substr(13, 3);
    const auto sameDay = [&](Seconds other) { return localText(other).substr(0, 10) == local.substr(0, 10); };
    const String which = sameDay(now)                            ? u"hoy"
                         : sameDay(now - std::chrono::hours(24)) ? u"ayer"
                                                                 : u"el " + dayTold(local);
    return which + (hour.starts_with(u"1:") ? u" a la " : u" a las ") + hour;
}

} // namespace zv
