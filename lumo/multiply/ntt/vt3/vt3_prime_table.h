/// Constants and roots of one prime in the form of one field, built when first asked for and kept.
#pragma once

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo {

/// Prime `index` of vt3_prime_factors() with roots for transforms of up to 2^levels elements. Thread-safe;
/// allocates only when the prime has no table yet or too short a one.
const kernels::Vt3Prime& vt3_prime_table(unsigned index, kernels::Vt3Form form, unsigned levels);

}  // namespace lumo
