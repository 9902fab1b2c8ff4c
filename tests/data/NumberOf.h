#pragma once

#include "runtime/Errors.h"

#include <gtest/gtest.h>

namespace zv {

/// The number with which an act fails, 0 if it does not. The description must hold the words.
inline std::int32_t numberOf(const auto& act, StringView words = {})
{
    try {
        act();
    } catch (const RuntimeError& error) {
        EXPECT_NE(error.description().find(words), String::npos) << error.what();
        return error.number();
    }
    return 0;
}

} // namespace zv
