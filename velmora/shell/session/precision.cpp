#include "velmora/shell/session/precision.h"

namespace velmora {

namespace {

using wide = unsigned __int128;

// The fractions of log16(10) = 0.830482023721840586967579857372347543966 and of
// log10(16) = 1.204119982655924780854955578897972107072, times 2^64, rounded down.
constexpr upL_t LOG16_OF_10 = 0xd49a784bcd1b8afe;
constexpr upL_t LOG10_OF_16_FRACTION = 0x34413509f79fef31;

upL_t times_fraction_to_nearest(upL_t n, upL_t fraction) {
    return static_cast<upL_t>((static_cast<wide>(n) * fraction + (static_cast<wide>(1) << 63)) >> 64);
}

}  // namespace

upL_t hex_digits_of(upL_t decimal_digits) {
    return times_fraction_to_nearest(decimal_digits, LOG16_OF_10);
}

upL_t decimal_digits_of(upL_t hex_digits) {
    return hex_digits + times_fraction_to_nearest(hex_digits, LOG10_OF_16_FRACTION);
}

upL_t precision_words_of(upL_t decimal_digits) {
    return (hex_digits_of(decimal_digits) >> 4) + 3;
}

}  // namespace velmora
