/// Multiplying vector operations: how many a second this machine makes, and how many a product needs.
#pragma once

#include <string_view>

#include "lumo/foundation/types/types.h"

namespace lumo::bench {

/// Fused multiply-adds of doubles in registers of 256 or 512 bits, and of 52-bit integers in 512.
enum class Multiplier { none, doubles256, doubles512, integers512 };

/// Operations a second of `threads` threads at once, measured now with 12 chains in registers.
double peak_rate(Multiplier kind, upL_t threads);

/// What the kernels in use multiply with; none for portable kernels and algorithms without vectors.
Multiplier multiplier_of(std::string_view tag);

/// Operations that two forward transforms, the pointwise product and one inverse transform need for a product
/// of `bits`, by the butterflies of the row: weights, twists and odd factors with them, but not cutting
/// operands into digits, remaindering and carries. A lower bound of what runs, so that a share of the peak is
/// one, too.
///
/// FFT: N / 2 complex points in m parts: log2(N / 2m) levels of butterflies with 6 operations each, those
/// whose root is 1 or i none; 14 or 32 for m = 3 or 5 points; 4 a point for the weights, 4 for the pointwise
/// product. VT3 and its kin, for each prime: k levels of butterflies with one product each, (m - 1)^2 / 2
/// products for m points, one general product a point for the twist, one for the pointwise product. A product
/// takes 3 operations in integers and 4 in doubles, a general one 4 and 5.
double operations(std::string_view tag, upL_t bits);

}  // namespace lumo::bench
