#pragma once

// What the tests of the surface ask of the system: its environment, what is loaded, and how much memory is
// taken.

#include <zvconfiguracion/library.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

#ifdef _WIN32
#include <vector>

/// What the system says of "/nada.so".
constexpr char notThere[] = "No se puede cargar la biblioteca (126).";

inline void setenv(const char* name, const char* value, int /*over*/) { _putenv_s(name, value); }
inline void unsetenv(const char* name) { _putenv_s(name, ""); }

inline bool isLoaded(const std::string& file) { return GetModuleHandleA(file.c_str()) != nullptr; }

/// What each load of a library costs for ever, in bytes: the compiler's library of threads, which is linked
/// into it, keeps what it knows of the thread.
constexpr long long keptByLoad = 1024;

/// Bytes that are taken, in all heaps.
inline long long heapInUse()
{
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    long long taken = 0;
    for (HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry) != 0)
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
                taken += entry.cbData;
    }
    return taken;
}
/// Regions of the address space.
inline long long memoryPieces()
{
    MEMORY_BASIC_INFORMATION region{};
    long long count = 0;
    for (char* at = nullptr; VirtualQuery(at, &region, sizeof region) != 0;
         at = static_cast<char*>(region.BaseAddress) + region.RegionSize)
        count += region.State != MEM_FREE;
    return count;
}
#else
#include <malloc.h>
#include <unistd.h>

constexpr char notThere[] = "/nada.so: cannot open shared object file: No such file or directory";
constexpr long long keptByLoad = 16;

inline bool isLoaded(const std::string& file)
{
    return dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr;
}
inline long long heapInUse() { return static_cast<long long>(mallinfo2().uordblks); }
inline long long memoryPieces()
{
    std::ifstream maps("/proc/self/maps");
    return std::count(std::istreambuf_iterator<char>(maps), {}, '\n');
}
#endif
