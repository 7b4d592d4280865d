/// Products of two operands of the same short length, unrolled for each length.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo::Basecase {

/// Digits of 64 bits, the longest operands with code of their own. Beyond, code would crowd the caches.
inline constexpr upL_t MAX_FIXED_DIGITS = 12;

template <typename wtype>
using FixedMul = void (*)(wtype* T, const wtype* A, const wtype* B);
template <typename wtype>
using FixedSqr = void (*)(wtype* T, const wtype* A);

/// For operands of 1 <= digits <= MAX_FIXED_DIGITS. T must not overlap the operands.
template <typename wtype>
FixedMul<wtype> fixed_mul(upL_t digits);
template <typename wtype>
FixedSqr<wtype> fixed_sqr(upL_t digits);

}  // namespace lumo::Basecase
