#include "suite/Process.h"

#include "runtime/String.h"

#include <charconv>
#include <memory>
#include <windows.h>

namespace zv::process {
namespace {

struct CloseHandleOf {
    void operator()(void* handle) const { CloseHandle(handle); }
};

/// When a program began, in the system's units since the year 1601; "" if it has ended or is not told.
std::string startOf(HANDLE program)
{
    FILETIME begun{};
    FILETIME ended{};
    FILETIME inSystem{};
    FILETIME inProgram{};
    // What has ended stays to be asked as long as someone holds a handle.
    if (GetProcessTimes(program, &begun, &ended, &inSystem, &inProgram) == 0 ||
        WaitForSingleObject(program, 0) == WAIT_OBJECT_0)
        return "";
    return std::to_string(std::uint64_t{begun.dwHighDateTime} << 32U | begun.dwLowDateTime);
}

std::string utf8(const std::wstring& text) { return toUtf8(String(text.begin(), text.end())); }

} // namespace

std::optional<Identity> self()
{
    return Identity{std::to_string(GetCurrentProcessId()), startOf(GetCurrentProcess())};
}

State stateOf(const Identity& program)
{
    DWORD number = 0;
    const char* const end = program.process.data() + program.process.size();
    if (std::from_chars(program.process.data(), end, number).ptr != end)
        return State::unknown;
    const std::unique_ptr<void, CloseHandleOf> found(
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, number));
    // Refused: there is a program of that number, and it is another person's.
    if (!found)
        return GetLastError() == ERROR_INVALID_PARAMETER ? State::ended : State::unknown;
    return startOf(found.get()) == program.start ? State::running : State::ended;
}

std::string hostName()
{
    DWORD size = 0;
    GetComputerNameExW(ComputerNameDnsHostname, nullptr, &size);
    std::wstring name(size, L'\0');
    if (size == 0 || GetComputerNameExW(ComputerNameDnsHostname, name.data(), &size) == 0)
        return "";
    name.resize(size);
    return utf8(name);
}

std::string boot() { return "w"; }

std::string machine()
{
    // Programs of 32 bits see a registry of their own unless they ask for that of the machine.
    wchar_t key[64]{};
    DWORD size = sizeof key;
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Cryptography", 0, KEY_READ | KEY_WOW64_64KEY,
                      &opened) != ERROR_SUCCESS)
        return "";
    const LSTATUS read =
        RegGetValueW(opened, nullptr, L"MachineGuid", RRF_RT_REG_SZ, nullptr, static_cast<void*>(key), &size);
    RegCloseKey(opened);
    return read == ERROR_SUCCESS ? utf8(key).substr(0, 8) : "";
}

} // namespace zv::process
