#pragma once

#include "data/Engine.h"

#include <functional>

namespace zv {

/// The three databases of the school at a URL, which must exist. Where they, or what `check` finds, make it
/// fail, nothing of them was changed.
School openSchool(StringView url, const std::function<void(const School&)>& check = {});
/// The same for looking only: nothing of them is changed, and no right to write is needed.
School inspectSchool(StringView url);
/// Makes the three databases with all their tables, empty or as `fill` leaves them. Until all is there, they
/// are nowhere to be found. Fails if one exists already or `fill` fails, and then leaves nothing behind.
School createSchool(StringView url, const std::function<void(School&)>& fill = {});
/// Fresh databases with all tables, empty, that are gone with their connections. "sqlite:" makes them in
/// memory.
School temporarySchool(StringView url = u"sqlite:");

} // namespace zv
