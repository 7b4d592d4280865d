/// The merge of two neighbouring ranges of a series without R: P0 := P0 Q1 + P1, Q0 := Q0 Q1.
#pragma once

#include "lumo/multiply/multiply_context.h"
#include "lumo/series/bsr_objects.h"

namespace lumo {

/// As bsr_merge(), with its scratch.
template <typename wtype>
void hyperdescent_merge(const MultiplyContext& ctx, Parts<wtype>& left, const Parts<wtype>& right,
                        ExactFloat<wtype> T);

}  // namespace lumo
