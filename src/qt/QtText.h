#pragma once

#include "runtime/String.h"

#include <QString>

namespace zv {

inline QString toQt(StringView text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
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
