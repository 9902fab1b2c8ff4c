#pragma once

#include "data/Engine.h"

#include <functional>

namespace zv {

/// One of a school's databases.
ConnectionPtr& baseOf(School& school, Database which);
const ConnectionPtr& baseOf(const School& school, Database which);

/// Opens the three databases of the school at a URL, which must exist. If that or the callback `check` fails,
/// nothing of them was changed.
School openSchool(StringView url, const std::function<void(const School&)>& check = {});
/// Read-only openSchool(): nothing is changed, and no right to write is needed.
School inspectSchool(StringView url);
/// Creates the three databases with all their tables, empty or filled by the callback, all or nothing: until
/// all is there they are nowhere to be found. Fails if one exists already or `fill` fails, and then leaves
/// nothing behind. `kept`: URL where the one that is there is kept, which then may be.
School createSchool(StringView url, const std::function<void(School&)>& fill = {}, StringView kept = {});
/// Temporary databases with all tables, empty, deleted with their connections; "sqlite:" keeps them in
/// memory.
School temporarySchool(StringView url = u"sqlite:");

} // namespace zv
