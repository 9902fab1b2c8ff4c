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

} // namespace zv
