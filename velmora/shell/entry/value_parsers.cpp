#include "velmora/shell/entry/value_parsers.h"

#include <cmath>
#include <limits>

#include "lumo/foundation/console/parse_counts.h"

namespace velmora {

namespace {

constexpr std::uint64_t LARGEST = std::numeric_limits<std::uint64_t>::max();

/// Takes a run of digits off the front.
std::uint64_t take_digits(std::string_view& text) {
    std::uint64_t n = 0;
    while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        const unsigned digit = text.front() - '0';
        n = n > (LARGEST - digit) / 10 ? LARGEST : n * 10 + digit;
        text.remove_prefix(1);
    }
    return n;
}

double take_fraction(std::string_view& text) {
    double fraction = 0;
    double weight = 0.1;
    while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        fraction += weight * (text.front() - '0');
        weight /= 10;
        text.remove_prefix(1);
    }
    return fraction;
}

/// 0 for a character that is no suffix.
unsigned suffix_shift(char c) {
    constexpr std::string_view UPPER = "KMGTPE";
    constexpr std::string_view LOWER = "kmgtpe";
    for (unsigned i = 0; i < UPPER.size(); i++) {
        if (c == UPPER[i] || c == LOWER[i]) return 10 * (i + 1);
    }
    return 0;
}

}  // namespace

std::uint64_t parse_plain_count(std::string_view text) {
    return take_digits(text);
}

std::uint64_t parse_byte_size(std::string_view text) {
    const std::uint64_t integer = take_digits(text);
    double fraction = 0;
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        fraction = take_fraction(text);
    }
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    const unsigned shift = text.empty() ? 0 : suffix_shift(text.front());
    if (shift == 0) return integer;
    if (integer > LARGEST >> shift) return LARGEST;
    // A fraction below one as far as its double tells: its part stays within 2^shift.
    const auto part = static_cast<std::uint64_t>(std::ceil(std::ldexp(fraction, static_cast<int>(shift))));
    const std::uint64_t whole = integer << shift;
    return part > LARGEST - whole ? LARGEST : whole + part;
}

bool parse_switch(std::string_view text) {
    if (!text.empty() && text.front() == '-') text.remove_prefix(1);
    return lumo::Console::parse_decimal_count(text) != 0;
}

}  // namespace velmora
