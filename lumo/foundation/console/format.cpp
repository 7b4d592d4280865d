#include <cstdio>

#include "lumo/foundation/console/console.h"

namespace lumo::Console {

namespace {

std::string group_digits(std::uint64_t n, char separator) {
    std::string digits = std::to_string(n);
    for (std::size_t at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, 1, separator);
    }
    return digits;
}

}  // namespace

std::string format_commas(std::uint64_t n) {
    return group_digits(n, ',');
}

std::string format_commas(std::int64_t n) {
    // Negated as unsigned, which is defined for the smallest value too.
    const auto bits = static_cast<std::uint64_t>(n);
    return n < 0 ? "-" + group_digits(~bits + 1, ',') : group_digits(bits, ',');
}

std::string format_quotes(std::uint64_t n) {
    return group_digits(n, '\'');
}

std::string format_bytes(std::uint64_t bytes) {
    static constexpr const char* UNITS[] = {"bytes", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    auto scaled = static_cast<double>(bytes);
    unsigned unit = 0;
    while (scaled >= 1024.0) {
        scaled /= 1024.0;
        unit++;
    }
    const int decimals = unit == 0 || scaled >= 99.95 ? 0 : scaled >= 9.995 ? 1 : 2;
    char text[32];
    std::snprintf(text, sizeof text, " (%5.*f %s)", decimals, scaled, UNITS[unit]);
    return format_commas(bytes) + text;
}

}  // namespace lumo::Console
