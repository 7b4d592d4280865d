/// Lengths of the number-theoretic transform.
#pragma once

#include <span>
#include <vector>

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo {

/// m 2^k digits of b bits modulo n primes: products modulo 2^(b m 2^k) - 1, a multiple of 64 bits.
struct Vt3Size {
    unsigned n, m, k, b;

    upL_t points() const { return upL_t(m) << k; }
    upL_t bits() const { return b * points(); }
    kernels::Vt3Shape shape() const;
    friend bool operator==(const Vt3Size&, const Vt3Size&) = default;
};

inline constexpr unsigned VT3_LEAST_K = 9, VT3_MOST_K = 39;
inline constexpr upL_t VT3_MAX_BITS = upL_t(600) << 39;

/// All lengths whose digits cannot outgrow the primes, by bits.
std::span<const Vt3Size> vt3_all_sizes();
/// Those that no longer one beats, by bits and by cost.
std::span<const Vt3Size> vt3_sizes();
/// The fastest of at least `bits`. Throws LimitExceededException.
const Vt3Size& vt3_size_for(upL_t bits);

/// Of any lengths those that no longer one beats by cost, by bits.
std::vector<Vt3Size> vt3_best_sizes(std::vector<Vt3Size> all);
/// The first of at least `bits` of lengths in their order. Throws LimitExceededException.
const Vt3Size& vt3_size_among(std::span<const Vt3Size> sizes, upL_t bits);

}  // namespace lumo
