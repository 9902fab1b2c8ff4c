#include "progress/Missing.h"

#include "progress/Panel.h"

namespace zv::progress {

std::map<Long, std::vector<String>> missing(Connection& centro, Kind kind, Long section)
{
    std::map<Long, std::vector<String>> result;
    for (Report& report : panel(centro, {.kind = kind, .section = section}).reports)
        result.emplace(report.pupil, std::move(report.missing));
    return result;
}

} // namespace zv::progress
