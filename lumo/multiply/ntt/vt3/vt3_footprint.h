/// Bytes that a transform of one length takes, and into how many pieces its work is cut.
#pragma once

#include "lumo/multiply/ntt/vt3/vt3_sizes.h"

namespace lumo {

/// Scratch of a step: twists of all primes, then for every piece its tiles, carries and heads.
struct Vt3Footprint {
    upL_t prime;   ///< residues of one prime
    upL_t image;   ///< of all primes, and a header
    upL_t pieces;  ///< ranges of column tiles, at most `tds`
    upL_t twist, tiles, carry, ones;
    upL_t scratch;

    Vt3Footprint(const Vt3Size& size, upL_t tds);
    /// For a product in the form that needs least: one image, and one prime of the other.
    upL_t small_total() const { return image + align_bytes(prime) + scratch; }
};

inline constexpr upL_t VT3_MOST_PIECES = 256;

}  // namespace lumo
