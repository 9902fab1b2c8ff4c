#include "suite/Process.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace zv::process {
namespace {

namespace fs = std::filesystem;

/// The first line of a file; "" if it cannot be read.
std::string lineOf(const fs::path& file)
{
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

/// Number of the process and moment of its start (ticks since the machine's) from a line of /proc/N/stat. The
/// program's name between them stands in parentheses and may hold blanks and parentheses itself.
std::optional<Identity> identityIn(const std::string& stat)
{
    constexpr int fieldsToStart = 20;
    const std::size_t nameEnd = stat.rfind(')');
    if (nameEnd == std::string::npos)
        return std::nullopt;
    std::size_t from = nameEnd;
    for (int field = 0; field < fieldsToStart; ++field) {
        from = stat.find(' ', from);
        if (from == std::string::npos)
            return std::nullopt;
        ++from;
    }
    return Identity{stat.substr(0, stat.find(' ')), stat.substr(from, stat.find(' ', from) - from)};
}

} // namespace

std::optional<Identity> self() { return identityIn(lineOf("/proc/self/stat")); }

State stateOf(const Identity& program)
{
    // A machine that hides the processes of other users tells nothing.
    if (lineOf("/proc/1/stat").empty())
        return State::unknown;
    const auto now = identityIn(lineOf(fs::path("/proc") / program.process / "stat"));
    return now && now->start == program.start ? State::running : State::ended;
}

std::string hostName() { return lineOf("/proc/sys/kernel/hostname"); }

std::string boot() { return lineOf("/proc/sys/kernel/random/boot_id").substr(0, 8); }

std::string machine()
{
    std::error_code ignored;
    const std::string processes = fs::read_symlink("/proc/self/ns/pid", ignored).string();
    return lineOf("/etc/machine-id").substr(0, 8) + processes;
}

} // namespace zv::process
