#include "lumo/radix/digit_counts.h"

#include <numeric>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

DigitCounts::DigitCounts(upL_t radix) : base(radix) {
    if (radix != 10 && radix != 16)
        throw InvalidParametersException("DigitCounts::DigitCounts()", "Invalid radix.");
}

upL_t DigitCounts::total() const {
    return std::accumulate(counts.begin(), counts.end(), upL_t(0));
}

void DigitCounts::add(const char* digits, upL_t count) {
    // Four tables, so that equal neighbours do not wait for each other's sum.
    constexpr upL_t LANES = 4;
    upL_t tables[LANES][256] = {};
    const auto* bytes = reinterpret_cast<const unsigned char*>(digits);
    upL_t i = 0;
    for (; i + LANES <= count; i += LANES)
        for (upL_t lane = 0; lane < LANES; lane++) tables[lane][bytes[i + lane]]++;
    for (; i < count; i++) tables[0][bytes[i]]++;
    const auto occurrences = [&](upL_t byte) {
        return tables[0][byte] + tables[1][byte] + tables[2][byte] + tables[3][byte];
    };
    for (upL_t digit = 0; digit < base; digit++)
        counts[digit] += occurrences(digit) + occurrences(digit < 10 ? '0' + digit : 'a' + digit - 10);
}

DigitCounts& DigitCounts::operator+=(const DigitCounts& other) {
    for (upL_t digit = 0; digit < base; digit++) counts[digit] += other.counts[digit];
    return *this;
}

std::string DigitCounts::to_string() const {
    std::string text;
    for (upL_t digit = 0; digit < base; digit++) {
        if (digit != 0) text += "  ";
        text += Console::format_commas(counts[digit]);
    }
    return text;
}

std::string DigitCounts::report_line() const {
    return (base == 10 ? "Dec Counts: " : "Hex Counts: ") + to_string();
}

}  // namespace lumo
