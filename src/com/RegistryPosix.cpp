#include "com/Registry.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zv::com {

namespace {

namespace fs = std::filesystem;

fs::path folder()
{
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return fs::path(value == nullptr ? "" : value);
    };
    fs::path data = variable("XDG_DATA_HOME");
    // A relative path counts as unset.
    if (!data.is_absolute() && variable("HOME").is_absolute())
        data = variable("HOME") / ".local" / "share";
    if (!data.is_absolute())
        throw Refusal{ZV_E_REGISTRATION};
    return data / "zvconfiguracion" / "servidores";
}

/// Path of this library: the file whose memory mapping contains the address of one of its functions.
std::string ownFile()
{
    const auto self = reinterpret_cast<std::uintptr_t>(&registerServer);
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream words(line);
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        words >> std::hex >> begin >> dash >> end;
        const std::size_t path = line.find('/');
        if (begin <= self && self < end && path != std::string::npos)
            return line.substr(path);
    }
    throw Refusal{ZV_E_REGISTRATION};
}

std::string textOf(const ZvGuid& id)
{
    std::array<char, 40> text{};
    const auto& d = id.data4;
    std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", id.data1,
                  static_cast<unsigned>(id.data2), static_cast<unsigned>(id.data3),
                  static_cast<unsigned>(d[0]), static_cast<unsigned>(d[1]), static_cast<unsigned>(d[2]),
                  static_cast<unsigned>(d[3]), static_cast<unsigned>(d[4]), static_cast<unsigned>(d[5]),
                  static_cast<unsigned>(d[6]), static_cast<unsigned>(d[7]));
    return text.data();
}

} // namespace

ZvResult registerServer(std::span<const Creatable> classes)
{
    return guarded([&] {
        const fs::path place = folder();
        const std::string own = ownFile();
        std::error_code failed;
        fs::create_directories(place, failed);
        for (const Creatable& each : classes) {
            std::ofstream file(place / toUtf8(each.progId), std::ios::trunc);
            if (!(file << textOf(each.classId) << '\n' << own << '\n').flush())
                throw Refusal{ZV_E_REGISTRATION};
        }
    });
}

ZvResult unregisterServer(std::span<const Creatable> classes)
{
    return guarded([&] {
        const fs::path place = folder();
        for (const Creatable& each : classes) {
            std::error_code failed;
            fs::remove(place / toUtf8(each.progId), failed);
            if (failed)
                throw Refusal{ZV_E_REGISTRATION};
        }
    });
}

} // namespace zv::com
