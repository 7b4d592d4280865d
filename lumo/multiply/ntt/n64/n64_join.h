/// Digits of the 64-bit transform from their residues. Source: Garner (1959).
#pragma once

#include "lumo/multiply/ntt/n64/n64_primes.h"
#include "lumo/multiply/ntt/n64/n64_sizes.h"

namespace lumo {

class N64Join {
 public:
    /// For residues times `points` / 2^64, as the inverse transforms leave them.
    N64Join(const N64PrimeSet& primes, upL_t points);

    /// Digits of all `rows` rows of the tile, the residues of each prime after those of the one before.
    void operator()(const std::uint64_t* tile, std::size_t rows,
                    kernels::DigitOutput<N64_CARRY_WORDS>& output) const;

 private:
    N64Field fields[N64_PRIMES];
    N64Factor first;                        ///< v1 = r1 first
    N64Factor second, second_v1;            ///< v2 = r2 second - v1 second_v1
    N64Factor third, third_v1, third_v2;    ///< v3 = r3 third - v1 third_v1 - v2 third_v2
    std::uint64_t p1, p1p2_low, p1p2_high;  ///< value = v1 + v2 p1 + v3 p1 p2
};

}  // namespace lumo
