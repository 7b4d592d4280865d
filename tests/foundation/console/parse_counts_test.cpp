#include "lumo/foundation/console/parse_counts.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumo::Console {
namespace {

TEST(ParseCounts, SuffixesScale) {
    EXPECT_EQ(parse_decimal_count("25"), 25u);
    EXPECT_EQ(parse_decimal_count("25k"), 25000u);
    EXPECT_EQ(parse_decimal_count("3M"), 3000000u);
    EXPECT_EQ(parse_decimal_count("1b"), 1000000000u);
    EXPECT_EQ(parse_decimal_count("2Tx"), 2000000000000u);
    EXPECT_EQ(parse_decimal_count("1G"), 1u);
    EXPECT_EQ(parse_decimal_count("1 k"), 1u);
    EXPECT_EQ(parse_decimal_count(""), 0u);
    EXPECT_EQ(parse_decimal_count("-1"), 0u);
}

TEST(ParseCounts, HugeNumbersSaturate) {
    constexpr auto LARGEST = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(parse_decimal_count("18446744073709551615"), LARGEST);
    EXPECT_EQ(parse_decimal_count("18446744073709551616"), LARGEST);
    EXPECT_EQ(parse_decimal_count("18446744073709552k"), LARGEST);
    EXPECT_EQ(parse_decimal_count(std::string(400, '9')), LARGEST);
    EXPECT_EQ(parse_signed_count("99999999999999999999"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(parse_signed_count("-99999999999999999999"), -std::numeric_limits<std::int64_t>::max());
}

TEST(ParseCounts, Signs) {
    EXPECT_EQ(parse_signed_count("-2k"), -2000);
    EXPECT_EQ(parse_signed_count("\t 12"), 12);
    EXPECT_EQ(parse_signed_count("--12"), 0);
}

}  // namespace
}  // namespace lumo::Console
