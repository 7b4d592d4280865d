/// Exponential and logarithm of double-doubles, correct to about 100 bits: seeds of iterations.
#pragma once

#include "lumo/foundation/types/double_double.h"

namespace lumo {

/// ln 2 to 107 bits.
inline constexpr DoubleDouble LN2_PAIR{0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};

/// |x| < 700; the relative error grows with |x|, 2^-101 for each unit.
DoubleDouble exp_pair(DoubleDouble x);
/// x > 0; the absolute error is 2^-101 for each unit of the result, at least one.
DoubleDouble log_pair(DoubleDouble x);

}  // namespace lumo
