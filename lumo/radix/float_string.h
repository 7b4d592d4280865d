/// A number being formatted for display.
#pragma once

#include <string>
#include <string_view>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Starts from plain digits and takes the operations in this order: round() or truncate(), apply_dot(),
/// strip_lzs(), apply_sign(), then set_integer() or set_scientific(). Each is optional; one that comes after
/// a later one is an assertion, as is one that makes no sense for the digits.
class FloatString {
 public:
    /// Digits in text of radix 10 or 16 (lower-case), the most significant first, at least one.
    /// InvalidParametersException "Invalid radix." or "Invalid Digit".
    FloatString(upL_t radix, std::string_view digits);

    /// Keeps the first `digits`.
    void truncate(upL_t digits);
    /// Keeps the first `digits`, rounded half up. True if a carry made it one digit longer than that ("100"
    /// from "99.9"): the last digit is then dropped, and the value has one more place.
    bool round(upL_t digits);
    /// Puts the point behind the first `digits`; 0 puts it in front, behind a zero.
    void apply_dot(upL_t digits);
    /// Drops the low zeros, back to the point, and the point when nothing follows it.
    void strip_lzs();
    void apply_sign(bool positive);
    /// The number is complete as it stands.
    void set_integer();
    /// Appends " *10^ " or " *16^ " and the exponent.
    void set_scientific(spL_t exponent);

    const std::string& text() const { return buffer; }

 private:
    std::string buffer;
    upL_t base;
    bool has_dot = false;
    bool has_sign = false;
    bool finished = false;

    char digit_character(upL_t value) const { return "0123456789abcdef"[value]; }
    upL_t digit_value(char c) const { return static_cast<upL_t>(c <= '9' ? c - '0' : c - 'a' + 10); }
    void require_digits_only(const char* location) const;
};

}  // namespace lumo
