/// Lengths of "VST": those of the vector transform of digits of 24 (n - 1) bits, with up to 10 primes.
#pragma once

#include "lumo/multiply/ntt/vt3/vt3_sizes.h"

namespace lumo {

inline constexpr upL_t VST_MAX_BITS = upL_t(648) << 39;

/// Those that no longer one beats, by bits and by cost.
std::span<const Vt3Size> vst_sizes();
/// The fastest of at least `bits`. Throws LimitExceededException.
const Vt3Size& vst_size_for(upL_t bits);

}  // namespace lumo
