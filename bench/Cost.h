#pragma once

#include <chrono>
#include <ctime>
#include <fstream>
#include <iostream>
#include <string>

namespace zv::bench {

inline long long nowMicroseconds()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Prints the time since `start` (microseconds of the steady clock), the processor time of the process
/// (microseconds) and its peak memory (kB).
inline void tellCost(long long start)
{
    const long long took = nowMicroseconds() - start;
    const double worked = 1e6 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmHWM:") {
    }
    long memory = 0;
    status >> memory;
    std::cout << took << ' ' << static_cast<long long>(worked) << ' ' << memory << '\n';
}

} // namespace zv::bench
