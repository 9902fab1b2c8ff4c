#include "suite/Station.h"

#include "suite/Process.h"

#include <array>
#include <optional>
#include <random>
#include <string>

namespace zv {

namespace {

/// Parts of an identity: host / process / start / boot / machine. `machine` holds the machine's and the
/// process namespace's identifiers: machines may share a name, and containers on one machine do not see each
/// other's processes.
enum Part : std::size_t { host, number, start, boot, machine, parts };
using Parts = std::array<std::string, parts>;

std::string joined(const Parts& identity)
{
    std::string text = identity[host];
    for (std::size_t part = number; part < parts; ++part)
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

std::string writtenHostName()
{
    constexpr std::size_t longest = 64;
    std::string name = process::hostName();
    for (char& c : name)
        if (c <= ' ' || c > '~' || c == '/')
            c = '-';
    return name.empty() ? "equipo" : name.substr(0, longest);
}

/// Without process information, random numbers: unique, but no other station can check liveness.
Parts ownIdentity()
{
    if (const auto self = process::self())
        return {writtenHostName(), self->process, self->start, process::boot(), process::machine()};
    std::random_device chance;
    return {writtenHostName(), std::to_string(chance()), std::to_string(chance()), "", ""};
}

using process::State;

State seen(const Parts& own, const std::string& identity)
{
    const auto other = parted(identity);
    if (!other || own[boot].empty() || (*other)[host] != own[host] || (*other)[machine] != own[machine])
        return State::unknown;
    if ((*other)[boot] != own[boot])
        return State::ended;
    return process::stateOf({(*other)[number], (*other)[start]});
}

} // namespace

const Station& thisStation()
{
    static const Station station = [] {
        const Parts own = ownIdentity();
        const auto is = [own](State what) {
            return [own, what](StringView identity) { return seen(own, toUtf8(identity)) == what; };
        };
        return Station{fromUtf8(joined(own)), is(State::ended), is(State::running)};
    }();
    return station;
}

} // namespace zv
