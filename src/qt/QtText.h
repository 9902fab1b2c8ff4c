#pragma once

#include "runtime/String.h"

#include <QString>

namespace zv {

inline QString toQt(StringView text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}
inline String fromQt(const QString& text) { return text.toStdU16String(); }

/// A text as a widget shows it: every end of line is one "\n".
QString shown(StringView text);
/// The other way round, with "\r\n".
String unshown(const QString& text);
/// Where a place of the text is in what is shown, and back.
qsizetype shownPlace(StringView text, std::size_t place);
std::size_t placeOfShown(StringView text, qsizetype place);

/// What makes one text of another: so many characters from a place on are replaced.
struct TextChange {
    qsizetype start = 0;
    qsizetype removed = 0;
    QString inserted;
};
/// `caret` is where the new text was just edited; among equal characters it tells which ones are new.
TextChange changeBetween(const QString& before, const QString& after, qsizetype caret);

} // namespace zv
