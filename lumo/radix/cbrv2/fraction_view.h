/// Parts of a number by position, without copying.
#pragma once

#include "lumo/numbers/objects/big_float.h"

namespace lumo {

/// The words of A at positions from `low` (inclusive) to `high` (exclusive), positive. Its low words may be
/// zero, its top word is not.
template <typename wtype>
BigFloat<wtype> words_between(const BigFloat<wtype>& A, spL_t low, spL_t high) {
    BigFloat<wtype> part;
    if (A.is_zero() || A.top() <= low || A.exp >= high) return part;
    const upL_t skip = A.exp < low ? static_cast<upL_t>(low - A.exp) : 0;
    const upL_t end = A.top() > high ? static_cast<upL_t>(high - A.exp) : A.L;
    part.T = A.T + skip;
    part.L = bp_strip<wtype>(0, part.T, end - skip);
    part.exp = part.L == 0 ? 0 : A.exp + static_cast<spL_t>(skip);
    return part;
}

}  // namespace lumo
