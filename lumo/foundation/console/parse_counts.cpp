#include "lumo/foundation/console/parse_counts.h"

#include <algorithm>
#include <limits>

namespace lumo::Console {

namespace {

std::uint64_t saturating_mul_add(std::uint64_t a, std::uint64_t b, std::uint64_t c) {
    std::uint64_t result;
    if (__builtin_mul_overflow(a, b, &result) || __builtin_add_overflow(result, c, &result))
        return std::numeric_limits<std::uint64_t>::max();
    return result;
}

std::uint64_t multiplier_of(char suffix) {
    switch (suffix) {
        case 'K':
        case 'k':
            return 1000;
        case 'M':
        case 'm':
            return 1000000;
        case 'B':
        case 'b':
            return 1000000000;
        case 'T':
        case 't':
            return 1000000000000;
        default:
            return 1;
    }
}

}  // namespace

std::uint64_t parse_decimal_count(std::string_view text) {
    std::uint64_t value = 0;
    std::size_t at = 0;
    for (; at < text.size() && '0' <= text[at] && text[at] <= '9'; at++)
        value = saturating_mul_add(value, 10, static_cast<std::uint64_t>(text[at] - '0'));
    return at < text.size() ? saturating_mul_add(value, multiplier_of(text[at]), 0) : value;
}

std::int64_t parse_signed_count(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative) text.remove_prefix(1);
    constexpr std::int64_t LARGEST = std::numeric_limits<std::int64_t>::max();
    const auto magnitude = std::min<std::uint64_t>(parse_decimal_count(text), LARGEST);
    return negative ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude);
}

}  // namespace lumo::Console
