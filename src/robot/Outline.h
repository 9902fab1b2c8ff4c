#pragma once

#include "runtime/String.h"

#include <vector>

namespace zv {

/// What a statement consists of, read in the plainest way there is, without a thought for any one engine.
struct Outline {
    explicit Outline(StringView statement);

    String skeleton;              ///< "?" for each literal, "#" for each number; comments are kept.
    std::vector<String> literals; ///< With their quotes; a doubled quote stands as it is written.
    std::vector<String> kept;     ///< Quoted names and comments.
    bool second = false;          ///< Something follows the ";" that ends the statement.

    /// Whether a name stands in it, outside what is quoted.
    bool names(StringView name) const;
};

} // namespace zv
