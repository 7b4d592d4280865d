/// Conversion without splitting: by repeated multiplication, and by cutting bits.
#pragma once

#include "lumo/numbers/objects/big_float.h"
#include "lumo/radix/convert_plan.h"

namespace lumo {

/// Most words of a fraction that convert_leaf() takes; plans keep their leaves below.
inline constexpr upL_t LEAF_CAPACITY = 160;

/// out_end[-n .. 0) := the first n words of the radix after the point of a positive value below 1, the most
/// significant at out_end[-1]. Returns the word that follows them.
template <typename wtype>
wtype convert_leaf(const ConvertPlanP<wtype>& plan, wtype* out_end, upL_t n, const BigFloat<wtype>& value);

/// The same for radix 2^bits, for any n, exactly. An integer part is ignored.
template <typename wtype>
wtype convert_bits(unsigned bits, wtype* out_end, upL_t n, const BigFloat<wtype>& value,
                   const ParallelContext& ctx);

}  // namespace lumo
