/// Products of two operands of the same short length, and of a short one by a longer, unrolled for each
/// length of the shorter.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo::Basecase {

/// Digits of 64 bits, the longest operands with code of their own: squares up to where Karatsuba takes over,
/// products up to the halves of the longest that the tables send here. One length is at most 9 KiB of code.
inline constexpr upL_t MAX_FIXED_MUL = 20;
inline constexpr upL_t MAX_FIXED_SQR = 22;

/// Arrays of digits of any alignment; T must not overlap the operands.
using FixedMul = void (*)(void* T, const void* A, const void* B);
using FixedSqr = void (*)(void* T, const void* A);

/// T[0 .. digits + m) := A B for B of m >= digits digits.
using FixedStrip = void (*)(void* T, const void* A, const void* B, upL_t m);

/// For 1 <= digits <= MAX_FIXED_MUL.
FixedMul fixed_mul(upL_t digits);
FixedStrip fixed_strip(upL_t digits);
/// For 1 <= digits <= MAX_FIXED_SQR.
FixedSqr fixed_sqr(upL_t digits);

}  // namespace lumo::Basecase
