#pragma once

#include "data/history/Log.h"

#include <optional>

namespace zv::history {

/// Something that is not as it was written.
struct Finding {
    Long number = 0; ///< Of the entry at which it shows; 0 for the head.
    String words;    ///< Spanish, a sentence.
};

struct Verification {
    Head head;
    Long entries = 0;
    std::vector<Finding> findings; ///< The first of them; the rest is only counted.
    Long defects = 0;
};

/// Verifies the chain: numbers, links, digests, head. A text that is gone must have an erasing entry, and one
/// that has must be gone. With `noted`, a head of earlier, that entry must still be as it was. Other stations
/// may go on writing. Fails with tableMissing where there is no history.
Verification verify(Connection& centro, const std::optional<Head>& noted = {});

} // namespace zv::history
