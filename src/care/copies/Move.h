#pragma once

#include "care/copies/Contents.h"

namespace zv::care {

/// What was moved.
struct Moved {
    Long tables = 0;
    Long rows = 0;
    std::vector<TableContents> contents; ///< As read back at the end.
};

/// Copies a school that is read already, as moveSchool(). `kept`: as createSchool().
Moved copySchool(const School& school, Engine& source, StringView to,
                 const std::function<void(StringView table, Long rows)>& tell, StringView kept = {});

/// Copies a school to a place where there is none, of any engine that can make one, and compares both by
/// content before it is put in place: it is there whole, or not at all. The first stays as it is, and is read
/// as it was at one instant. Fails with a RuntimeError that says what to do: foreign tables, a place that is
/// taken, a difference.
Moved moveSchool(
    StringView from, StringView to,
    const std::function<void(StringView table, Long rows)>& tell = [](StringView, Long) {});

} // namespace zv::care
