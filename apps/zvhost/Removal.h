#pragma once

#include "zvhost/Deletion.h"
#include "zvhost/Host.h"
#include "zvhost/ListPage.h"

#include <QString>

#include <optional>

class QWidget;

namespace zv::host {

/// Formats references for a person, a line for each table.
QString reasons(const std::vector<Referrer>& who);

enum class Asks { yes, no };
/// Moves rows of a node to the recycle bin, those that may go: each is looked up, must be held by nobody, and
/// the module's guard has to agree, before the question and again after it. What may not go is told, with the
/// reason. `removed` gets each row as soon as it has gone, also if a later one fails with a RuntimeError.
/// Gives the row that others refer to, if the person wants another in its place.
std::optional<NamedRow> removeRows(QWidget* parent, Host& host, const Node& node,
                                   const std::vector<NamedRow>& rows, Asks asks,
                                   std::vector<NamedRow>& removed);

} // namespace zv::host
