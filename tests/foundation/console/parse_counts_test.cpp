#include "lumo/foundation/console/parse_counts.h"

#include <gtest/gtest.h>

namespace lumo::Console {
namespace {

TEST(ParseCounts, SuffixesScaleAndHugeNumbersSaturate) {
    constexpr std::uint64_t LARGEST = ~std::uint64_t(0);
    const std::pair<std::string, std::uint64_t> cases[] = {
        {"25", 25},
        {"25k", 25000},
        {"3M", 3000000},
        {"1b", 1000000000},
        {"2Tx", 2000000000000},
        {"1G", 1},
        {"1 k", 1},
        {"", 0},
        {"-1", 0},
        {"18446744073709551615", LARGEST},
        {"18446744073709551616", LARGEST},
        {"18446744073709552k", LARGEST},
        {std::string(400, '9'), LARGEST},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(parse_decimal_count(text), value) << text;
    const std::pair<std::string, std::int64_t> signs[] = {
        {"-2k", -2000},
        {"\t 12", 12},
        {"--12", 0},
        {"99999999999999999999", INT64_MAX},
        {"-99999999999999999999", -INT64_MAX},
    };
    for (const auto& [text, value] : signs) EXPECT_EQ(parse_signed_count(text), value) << text;
}

}  // namespace
}  // namespace lumo::Console
