/// Fixture of tests that run for both word types.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "lumo/foundation/types/types.h"

namespace lumo::testing {

using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;

template <typename wtype>
class WordTest : public ::testing::Test {
 protected:
    static constexpr unsigned W = WordTraits<wtype>::bits;
    static constexpr wtype ONES = static_cast<wtype>(-1);
    std::mt19937_64 random{20250101};
};

}  // namespace lumo::testing
