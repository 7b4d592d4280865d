/// Bytes that a transform of one length takes, and into how many pieces its work is cut.
#pragma once

#include "lumo/multiply/ntt/assemble.h"
#include "lumo/multiply/ntt/vt3/vt3_sizes.h"

namespace lumo {

/// Scratch of a step: twists of all primes, and what a pass needs for every piece.
struct Vt3Footprint {
    upL_t prime;  ///< residues of one prime
    upL_t image;  ///< of all primes, and a header
    TileGrid grid;
    upL_t twist;
    upL_t group;  ///< of 8 rows
    upL_t scratch;

    Vt3Footprint(const Vt3Size& size, upL_t tds);
    /// For a product in the form that needs least: one image, and one prime of the other.
    upL_t small_total() const { return image + align_bytes(prime) + scratch; }
};

/// Words that a segment leaves to the next one: the digits of more than 9 primes reach further.
constexpr std::size_t vt3_carry_words(const Vt3Size& size) {
    return size.n > 9 ? 5 : kernels::VT3_CARRY_WORDS;
}

}  // namespace lumo
