/// Counts of digits and of words. Decimal digits up to 10^15 + 50 are in range of all of them.
#pragma once

#include "lumo/foundation/types/types.h"

namespace velmora {

using lumo::upL_t;

/// n log16(10), to nearest: the hexadecimal digits that say as much as n decimal ones.
upL_t hex_digits_of(upL_t decimal_digits);
/// n log10(16), to nearest. hex_digits_of() takes it back to n.
upL_t decimal_digits_of(upL_t hex_digits);
/// 64-bit words after the point for so many decimal digits, with the working margin of 3.
upL_t precision_words_of(upL_t decimal_digits);

}  // namespace velmora
