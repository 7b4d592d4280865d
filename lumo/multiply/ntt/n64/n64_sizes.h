/// Lengths of the 64-bit transform, and the bytes they take.
#pragma once

#include <span>

#include "lumo/multiply/ntt/assemble.h"

namespace lumo {

/// m 2^k digits of one word: products modulo 2^(64 m 2^k) - 1. As m h rows of C columns.
struct N64Size {
    unsigned m, k;

    upL_t points() const { return upL_t(m) << k; }
    upL_t bits() const { return 64 * points(); }
    unsigned log_c() const;
    unsigned log_h() const { return k - log_c(); }
    upL_t columns() const { return upL_t(1) << log_c(); }
    upL_t rows() const { return upL_t(m) << log_h(); }
    friend bool operator==(const N64Size&, const N64Size&) = default;
};

inline constexpr upL_t N64_MAX_BITS = upL_t(64 * 7) << 53;

/// By length: every m 2^k from 256 words on, m of 1, 3, 5 and 7, for which there are primes; up to the first
/// that reaches N64_MAX_BITS.
std::span<const N64Size> n64_sizes();
/// The shortest of at least `bits`. Throws LimitExceededException beyond
/// N64_MAX_BITS.
const N64Size& n64_size_for(upL_t bits);

inline constexpr std::size_t N64_CARRY_WORDS = 4;

struct N64Footprint {
    upL_t row_words;  ///< from one row to the next
    upL_t prime;      ///< residues of one prime
    upL_t image;      ///< of all primes, and a header
    TileGrid grid;
    upL_t scratch;

    N64Footprint(const N64Size& size, upL_t tds);
    /// For a product in the form that needs least: one image, and one prime of the other.
    upL_t small_total() const { return image + prime + scratch; }
};

}  // namespace lumo
