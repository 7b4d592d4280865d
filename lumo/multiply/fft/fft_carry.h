/// Carries between the segments in which the last pass of the FFT writes its result. The result is a
/// little-endian integer of `size` bytes (a multiple of 8), taken modulo 2^(8 size) + 1.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Adds carry 2^(8 offset), offset <= size - 8. Returns what leaves the top: -1, 0 or 1.
int add_carry(unsigned char* integer, upL_t size, upL_t offset, std::int64_t carry);

/// Adds top 2^(8 size) modulo 2^(8 size) + 1. The residue 2^(8 size) itself comes out as zero bytes.
void wrap_negative(unsigned char* integer, upL_t size, std::int64_t top);

}  // namespace lumo
