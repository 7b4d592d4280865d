/// Memory of short products. `length` is words of the product, or of the ring of a descriptor.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Longest product in bits.
inline constexpr upL_t BKT_MAX_BITS = 65536;

/// An operand with its length: a multiple of 128 bytes.
template <typename wtype>
upL_t bkt_array_bytes(upL_t length);
/// A whole product of two operands of up to `length` words, with what Karatsuba needs: a multiple of 128
/// bytes, and the maximum over all lengths up to this one.
template <typename wtype>
upL_t bkt_scratch_bytes(upL_t length);
/// The longest operands, in words of 64 bits, whose product by BktAlgorithm fits in so many bytes with
/// operands and scratch: at least 1, at most what the algorithm takes.
upL_t bkt_largest_operand(upL_t bytes);

}  // namespace lumo
