/// How often each digit occurs.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Counts of the digits of radix 10 or 16. Counts of blocks are merged by addition, in any order.
class DigitCounts {
 public:
    /// InvalidParametersException "Invalid radix." for any other radix.
    explicit DigitCounts(upL_t radix);

    upL_t radix() const { return base; }
    upL_t operator[](upL_t digit) const { return counts[digit]; }
    upL_t total() const;
    /// Counts digits given as characters ('0'-'9', 'a'-'f') or as values 0-15. Other bytes are ignored.
    void add(const char* digits, upL_t count);
    void add_digit(upL_t digit, upL_t occurrences) { counts[digit] += occurrences; }
    DigitCounts& operator+=(const DigitCounts& other);
    bool operator==(const DigitCounts& other) const = default;

    /// The counts in the order of the digits, with commas, two blanks between them.
    std::string to_string() const;
    /// "Dec Counts: " or "Hex Counts: " and the counts.
    std::string report_line() const;

 private:
    upL_t base;
    std::array<upL_t, 16> counts{};
};

}  // namespace lumo
