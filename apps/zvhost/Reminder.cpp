#include "zvhost/Reminder.h"

#include "zvhost/Widgets.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace zv::host {
namespace {

constexpr qint64 longest = 7; ///< Days.

} // namespace

Reminder::Reminder(Remembered& memory, const Host& host, QDate today)
    : memory_(memory),
      key_(QStringLiteral("copias/") + QString::fromLatin1(QUrl::toPercentEncoding(shownUrl(host.url())))),
      today_(today)
{
    const QVariantList kept = memory_.value(key_).toList();
    if (kept.size() != 4)
        return;
    folder_ = kept[0].toString();
    last_ = kept[1].toDate();
    since_ = kept[2].toDate();
    said_ = kept[3].toDate();
}

void Reminder::keep() { memory_.set(key_, QVariantList{folder_, last_, since_, said_}); }

void Reminder::copied(const QString& file)
{
    folder_ = QFileInfo(file).absolutePath();
    last_ = today_;
    keep();
}

QString Reminder::due()
{
    if (!since_.isValid())
        since_ = today_;
    if (!folder_.isEmpty())
        for (const QFileInfo& each : QDir(folder_).entryInfoList({QStringLiteral("*.zvcopia")}, QDir::Files))
            last_ = std::max(last_, each.lastModified().date());
    const qint64 days = (last_.isValid() ? last_ : since_).daysTo(today_);
    const bool due = days > longest && said_ != today_;
    if (due)
        said_ = today_;
    keep();
    if (!due)
        return {};
    return last_.isValid()
               ? QStringLiteral("La última copia de seguridad que se conoce aquí es de hace %1 días.")
                     .arg(days)
               : QStringLiteral(
                     "Este centro se abre aquí desde hace %1 días y no se ha hecho ninguna copia de "
                     "seguridad.")
                     .arg(days);
}

} // namespace zv::host
