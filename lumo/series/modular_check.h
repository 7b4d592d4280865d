/// The redundancy check of the parts of a range: what their running hashes say against what their words are.
#pragma once

#include <initializer_list>

#include "lumo/numbers/objects/exact_float.h"

namespace lumo {

/// Throws BSRModularCheckFailedException "Modular Redundancy Check Failed" at "lmb_Verify_BSR()" for the
/// range [a, b) with each object's stored and computed hash when any disagree.
template <typename wtype>
void lmb_Verify_BSR(upL_t a, upL_t b, std::initializer_list<const ExactFloat<wtype>*> objects,
                    const ParallelContext& ctx);

}  // namespace lumo
