#include "qt/QtText.h"

#include <algorithm>

namespace zv {

namespace {

bool endsLine(StringView text, std::size_t at)
{
    return text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n';
}

} // namespace

QString shown(StringView text)
{
    QString result = toQt(text);
    result.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return result;
}

String unshown(const QString& text)
{
    QString result = text;
    result.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    result.replace(QLatin1String("\n"), QLatin1String("\r\n"));
    return fromQt(result);
}

qsizetype shownPlace(StringView text, std::size_t place)
{
    qsizetype result = 0;
    for (std::size_t at = 0; at < std::min(place, text.size()); ++at)
        result += endsLine(text, at) ? 0 : 1;
    return result;
}

std::size_t placeOfShown(StringView text, qsizetype place)
{
    std::size_t at = 0;
    for (; at < text.size() && place > 0; --place)
        at += endsLine(text, at) ? 2 : 1;
    return at;
}

TextChange changeBetween(const QString& before, const QString& after, qsizetype caret)
{
    const qsizetype shorter = std::min(before.size(), after.size());
    // Common suffix first, and no further than the caret: what stands behind it was not edited.
    const qsizetype behind = std::min(shorter, after.size() - std::clamp<qsizetype>(caret, 0, after.size()));
    qsizetype tail = 0;
    while (tail < behind && before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    qsizetype start = 0;
    while (start < shorter - tail && before[start] == after[start])
        ++start;
    return {start, before.size() - tail - start, after.mid(start, after.size() - tail - start)};
}

} // namespace zv
