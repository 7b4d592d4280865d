/// The redundancy check of the parts of a range: what their running hashes say against what their words are.
#pragma once

#include <initializer_list>

#include "lumo/numbers/objects/exact_float.h"

namespace lumo {

/// What made the objects that are checked.
enum class BSRStep { range, merge };

/// Throws BSRModularCheckFailedException at "lmb_Verify_BSR()" with the stored and the computed hash of each
/// object that disagrees: "Modular Redundancy Check Failed: a : b" for the range [a, b) by itself, "BSR Merge
/// Failure: a : b" for one that a merge put together.
template <typename wtype>
void lmb_Verify_BSR(upL_t a, upL_t b, std::initializer_list<const ExactFloat<wtype>*> objects,
                    const ParallelContext& ctx, BSRStep step = BSRStep::range);

}  // namespace lumo
