#pragma once

#include "data/history/Log.h"

#include <string>

namespace zv::history {

enum class Names {
    shown,
    hidden ///< Users, stations and pupils become numbers, in the order of their appearance; texts are left
           ///< out, and digests and links, by which a number could be tried out.
};

/// Exports all entries as JSON, an object and a line each, in UTF-8. What is stored enciphered stays so.
/// Gives the newest that was exported.
Head exportAll(Connection& centro, Names names, const std::function<void(const std::string& line)>& write);

} // namespace zv::history
