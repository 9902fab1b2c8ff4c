#pragma once

#include "runtime/Value.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zv::care {

/// Hash of rows (BLAKE2b of 256 bits) whose sum does not depend on their order. It finds what went wrong on
/// the way, and is no seal against somebody who makes rows to fit.
class RowHash {
public:
    /// The columns' names, in the order of the values.
    explicit RowHash(const std::vector<String>& columns);
    /// Adds a row's hash to the sum.
    void add(const std::vector<Value>& row, std::array<std::uint64_t, 4>& sum);

private:
    std::string head_;
    std::string bytes_;
};

} // namespace zv::care
