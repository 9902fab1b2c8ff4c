#pragma once

#include "runtime/String.h"

#include <vector>

namespace zv {

/// Structure of a statement, by a tokenizer of its own: the oracle for the tests must not share the product's
/// (data/Tokens.h).
struct Outline {
    explicit Outline(StringView statement);

    String skeleton;              ///< "?" for each literal, "#" for each number; comments are kept.
    std::vector<String> literals; ///< Raw: with their quotes, doubled ones not undone.
    std::vector<String> kept;     ///< Quoted identifiers and comments.
    bool second = false;          ///< Injection: another statement behind the ";".

    /// Whether an identifier occurs, quoted ones and literals aside.
    bool names(StringView name) const;
};

} // namespace zv
