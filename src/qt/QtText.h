#pragma once

#include "runtime/String.h"

#include <QString>

namespace zv {

inline QString toQt(StringView text)
{
    // Not fromUtf16, which takes a byte order mark away.
    return QStringView(text.data(), static_cast<qsizetype>(text.size())).toString();
}
inline String fromQt(const QString& text) { return text.toStdU16String(); }

/// Normalises line ends for a widget: each becomes one "\n".
QString shown(StringView text);
/// Inverse of shown(), with "\r\n".
String unshown(const QString& text);
/// Maps an offset in the text to one in what is shown, and back.
qsizetype shownPlace(StringView text, std::size_t place);
std::size_t placeOfShown(StringView text, qsizetype place);

} // namespace zv
