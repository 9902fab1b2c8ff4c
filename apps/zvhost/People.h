#pragma once

#include "data/Connection.h"
#include "suite/Registrations.h"

#include <QString>

#include <map>

namespace zv::host {

struct Node;

/// Names of the users of a school, looked up once each.
class People {
public:
    explicit People(School& school) : school_(school) {}

    /// Name of the member of staff behind a user, else the user's own; "" where the school knows neither.
    QString known(Integer user);
    /// known(), else "el usuario 7".
    QString name(Integer user);

private:
    School& school_;
    std::map<Integer, QString> names_;
};

/// A time of the database ("2024-09-12 08:30:00", this machine's local time) as it is said behind "desde":
/// "las 8:30", "ayer a las 8:30", "el 12 de septiembre a las 8:30"; the text itself if it is no time.
QString saidTime(const QString& moment);
/// Display name of a station: its machine.
QString stationName(StringView station);
/// Sentence: "La tiene abierta NOMBRE desde las 7:38, en el puesto SECRETARIA-2".
QString heldBy(People& people, const Registration& registration);
/// Rows of a node that somebody has open: the registrations by row, without those of stations that ended.
std::map<Long, Registration> heldRows(Connection& centro, const Node& node);

} // namespace zv::host
