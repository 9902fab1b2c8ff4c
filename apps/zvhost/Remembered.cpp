#include "zvhost/Remembered.h"

#include "qt/QtText.h"
#include "zvhost/Widgets.h"

#include <QMainWindow>
#include <QSettings>
#include <QSplitter>
#include <QUrl>

#include <algorithm>

namespace zv::host {
namespace {

const QString geometry = QStringLiteral("ventana/geometria");
const QString splitter = QStringLiteral("ventana/partes");

QString listKey(int node, const char* what)
{
    return QStringLiteral("lista%1/%2").arg(node).arg(QLatin1String(what));
}

/// Key of what is kept of a school; "" for one whose URL must not be stored.
QString schoolKey(const char* what, const String& url)
{
    if (shownUrl(url) != toQt(url))
        return {};
    return QLatin1String(what) + u'/' + QString::fromLatin1(QUrl::toPercentEncoding(toQt(url)));
}

QString sessionKey(const Host& host) { return schoolKey("sesiones", host.url()); }

} // namespace

QVariant Remembered::value(const QString& key) const
{
    return where_ == Where::settings ? QSettings().value(key) : values_.value(key);
}

void Remembered::set(const QString& key, const QVariant& value)
{
    if (where_ == Where::nowhere)
        values_[key] = value;
    else if (QSettings settings; settings.value(key) != value)
        settings.setValue(key, value);
}

bool Remembered::restoreWindow(QMainWindow& window, QSplitter& parts) const
{
    const bool known = window.restoreGeometry(value(geometry).toByteArray());
    return parts.restoreState(value(splitter).toByteArray()) && known;
}

void Remembered::keepWindow(const QMainWindow& window, const QSplitter& parts)
{
    set(geometry, window.saveGeometry());
    set(splitter, parts.saveState());
}

ListLook lookOf(const Remembered& memory, int node)
{
    ListLook look;
    look.column = memory.value(listKey(node, "orden")).toInt();
    look.descending = memory.value(listKey(node, "descendente")).toBool();
    look.search = memory.value(listKey(node, "buscar")).toString();
    for (const QVariant& each : memory.value(listKey(node, "anchos")).toList())
        look.widths += each.toInt();
    return look;
}

void keepLook(Remembered& memory, int node, const ListLook& look)
{
    if (look == lookOf(memory, node))
        return;
    memory.set(listKey(node, "orden"), look.column);
    memory.set(listKey(node, "descendente"), look.descending);
    memory.set(listKey(node, "buscar"), look.search);
    QVariantList widths;
    for (const int each : look.widths)
        widths += each;
    memory.set(listKey(node, "anchos"), widths);
}

std::optional<Choices> choicesOf(const Remembered& memory, Host& host)
{
    const QString key = sessionKey(host);
    const QVariantList kept = key.isEmpty() ? QVariantList() : memory.value(key).toList();
    if (kept.size() != 5)
        return std::nullopt;
    Choices choices;
    choices.user = static_cast<Integer>(kept[0].toInt());
    choices.userName = fromQt(kept[1].toString());
    choices.profile = static_cast<Integer>(kept[2].toInt());
    choices.mtp = kept[3].toBool();
    choices.readOnly = kept[4].toBool() || host.choices().readOnly;
    const std::vector<UserOrProfile> users = host.users();
    if (!users.empty() && std::ranges::find(users, choices.user, &UserOrProfile::number) == users.end())
        return std::nullopt;
    return choices;
}

void keepChoices(Remembered& memory, const Host& host)
{
    const Choices& choices = host.choices();
    if (const QString key = sessionKey(host); !key.isEmpty())
        memory.set(key, QVariantList{int{choices.user}, toQt(choices.userName), int{choices.profile},
                                     choices.mtp, choices.readOnly});
}

QString paperOf(const Remembered& memory, const String& url)
{
    const QString key = schoolKey("papel", url);
    return key.isEmpty() ? QString() : memory.value(key).toString();
}

void keepPaper(Remembered& memory, const String& url, const QString& folder)
{
    if (const QString key = schoolKey("papel", url); !key.isEmpty())
        memory.set(key, folder);
}

} // namespace zv::host
