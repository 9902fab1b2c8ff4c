#pragma once

#include <optional>
#include <string>

/// What the system tells of running programs: by what a station knows itself, and whether another still runs.
namespace zv::process {

/// A program on this machine. A number is used again by later programs; with its start it is one program's
/// alone.
struct Identity {
    std::string process; ///< Its number.
    std::string start;   ///< When it began, as the system counts.
};

/// This program; nothing where the system does not say.
std::optional<Identity> self();

enum class State { running, ended, unknown };
/// What became of a program that ran in the present run of the machine. Unknown: of others' programs nothing
/// is told.
State stateOf(const Identity& program);

/// As the network knows the machine; it may be empty, or hold any character.
std::string hostName();
/// The present run of the machine, by an identifier of its own; where the start of a program is told by the
/// calendar, so that it says this too, always the same. Not empty.
std::string boot();
/// Tells machines of the same name apart, and programs on one machine that do not see each other.
std::string machine();

} // namespace zv::process
