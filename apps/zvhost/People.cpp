#include "zvhost/People.h"

#include "data/Statement.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"
#include "zvhost/Nodes.h"

#include <QDateTime>
#include <QLocale>

namespace zv::host {
namespace {

/// First row of a query, its texts joined with blanks; "" for none, and where the school lacks the table or a
/// column: a suite may keep its users elsewhere.
QString firstRow(Connection& connection, StringView query, Integer user)
{
    try {
        const RecordsetPtr rows = connection.Execute(statement(query, {user}));
        QStringList words;
        if (!rows->Eof())
            for (const Value& each : rows->row())
                words += toQt(String() + each);
        return words.join(u' ').simplified();
    } catch (const RuntimeError&) {
        return {};
    }
}

} // namespace

QString People::known(Integer user)
{
    const auto [place, isNew] = names_.try_emplace(user);
    if (isNew) {
        place->second =
            firstRow(*school_.centro,
                     u"SELECT Nombre, Apellido_1, Apellido_2 FROM Personal WHERE CodUsuario={}", user);
        if (place->second.isEmpty())
            place->second =
                firstRow(*school_.entrada, u"SELECT Nombre FROM Usuario WHERE IDUsuario={}", user);
    }
    return place->second;
}

QString People::name(Integer user)
{
    const QString found = known(user);
    return found.isEmpty() ? QStringLiteral("el usuario %1").arg(user) : found;
}

QString saidTime(const QString& moment)
{
    const QDateTime time = QDateTime::fromString(moment, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (!time.isValid())
        return moment;
    QString hour = (time.time().hour() == 1 ? QStringLiteral("la ") : QStringLiteral("las ")) +
                   time.toString(QStringLiteral("H:mm"));
    const qint64 days = time.date().daysTo(QDate::currentDate());
    if (days == 0)
        return hour;
    const QString day =
        days == 1 ? QStringLiteral("ayer")
                  : QLocale(QLocale::Spanish).toString(time.date(), QStringLiteral("'el' d 'de' MMMM"));
    return day + QStringLiteral(" a ") + hour;
}

QString stationName(StringView station)
{
    const QString whole = toQt(station);
    qsizetype end = 0;
    while (end < whole.size() && whole[end] != u'/' && !whole[end].isSpace())
        ++end;
    return whole.left(end);
}

QString heldBy(People& people, const Registration& registration)
{
    QString text = QStringLiteral("La tiene abierta %1 desde %2")
                       .arg(people.name(registration.user), saidTime(toQt(registration.moment)));
    if (const QString station = stationName(registration.station); !station.isEmpty())
        text += QStringLiteral(", en el puesto ") + station;
    return text;
}

std::map<Long, Registration> heldRows(Connection& centro, const Node& node)
{
    std::map<Long, Registration> held;
    for (Registration& each : registrations(centro))
        if (sameName(each.form, node.form) && !each.gone)
            held.emplace(each.row, std::move(each));
    return held;
}

} // namespace zv::host
