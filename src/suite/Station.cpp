#include "suite/Station.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace zv {

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
struct ProcessStart {
    std::string process;
    std::string ticks;
};
std::optional<ProcessStart> processStart(const std::string& stat)
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
    return ProcessStart{stat.substr(0, stat.find(' ')), stat.substr(from, stat.find(' ', from) - from)};
}

/// Parts of an identity: host / process / start / boot / machine. The last one tells namesakes apart:
/// machines with the same name, and programs on one machine that do not see each other's processes.
enum Part : std::size_t { host, process, start, boot, machine, parts };
using Parts = std::array<std::string, parts>;

std::string joined(const Parts& identity)
{
    std::string text = identity[host];
    for (std::size_t part = process; part < parts; ++part)
        text += '/' + identity[part];
    return text;
}

std::optional<Parts> parted(const std::string& text)
{
    Parts identity;
    std::size_t from = 0;
    for (std::size_t part = host; part < parts; ++part) {
        const std::size_t end = text.find('/', from);
        if ((end == std::string::npos) != (part + 1 == parts))
            return std::nullopt;
        identity[part] = text.substr(from, end - from);
        from = end + 1;
    }
    return identity;
}

std::string machineKey()
{
    std::error_code ignored;
    const std::string processes = fs::read_symlink("/proc/self/ns/pid", ignored).string();
    return lineOf("/etc/machine-id").substr(0, 8) + processes;
}

std::string hostName()
{
    constexpr std::size_t longest = 64;
    std::string name = lineOf("/proc/sys/kernel/hostname");
    if (name.empty())
        if (const char* computer = std::getenv("COMPUTERNAME"))
            name = computer;
    for (char& c : name)
        if (c <= ' ' || c > '~' || c == '/')
            c = '-';
    return name.empty() ? "equipo" : name.substr(0, longest);
}

/// Where the machine does not say who we are, chance does: then nobody can tell that we are gone.
Parts ownIdentity()
{
    if (const auto self = processStart(lineOf("/proc/self/stat")))
        return {hostName(), self->process, self->ticks,
                lineOf("/proc/sys/kernel/random/boot_id").substr(0, 8), machineKey()};
    std::random_device chance;
    return {hostName(), std::to_string(chance()), std::to_string(chance()), "", ""};
}

enum class Seen { nothing, running, ended };

Seen seen(const Parts& own, const std::string& identity)
{
    const auto other = parted(identity);
    if (!other || own[boot].empty() || (*other)[host] != own[host] || (*other)[machine] != own[machine])
        return Seen::nothing;
    if ((*other)[boot] != own[boot])
        return Seen::ended;
    // A machine that hides the processes of other users tells nothing.
    if (lineOf("/proc/1/stat").empty())
        return Seen::nothing;
    const auto now = processStart(lineOf(fs::path("/proc") / (*other)[process] / "stat"));
    return now && now->ticks == (*other)[start] ? Seen::running : Seen::ended;
}

} // namespace

const Station& thisStation()
{
    static const Station station = [] {
        const Parts own = ownIdentity();
        const auto is = [own](Seen what) {
            return [own, what](StringView identity) { return seen(own, toUtf8(identity)) == what; };
        };
        return Station{fromUtf8(joined(own)), is(Seen::ended), is(Seen::running)};
    }();
    return station;
}

} // namespace zv
