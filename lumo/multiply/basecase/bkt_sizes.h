/// Memory of short products. `length` is words of the product, or of the ring of a descriptor.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// An operand with its length: a multiple of 128 bytes.
template <typename wtype>
upL_t bkt_array_bytes(upL_t length);
/// A whole product of two operands of up to `length` words, with what Karatsuba needs: a multiple of 128
/// bytes, and the maximum over all lengths up to this one.
template <typename wtype>
upL_t bkt_scratch_bytes(upL_t length);

}  // namespace lumo
