/// Butterflies of the 64-bit transform.
#pragma once

#include "lumo/multiply/ntt/n64/n64_primes.h"

namespace lumo {

/// Takes `words` words, 2^levels equal blocks, from the ring x^(2^levels) = 1 (x steps from block to block)
/// to its points in bit-reversed order. In place.
void n64_forward(const N64Prime& prime, std::uint64_t* x, std::size_t words, unsigned levels);
/// Back, times 2^levels.
void n64_inverse(const N64Prime& prime, std::uint64_t* x, std::size_t words, unsigned levels);

/// Transforms of m points across the m parts, of h rows of 16 words each, of a tile, by the index map
/// r = (r mod m, r mod h): no twist. Parts of the input are taken by r mod m; output s stands in part s.
void n64_odd_forward(const N64Prime& prime, unsigned m, std::uint64_t* tile, std::size_t h);
/// Back, times m.
void n64_odd_inverse(const N64Prime& prime, unsigned m, std::uint64_t* tile, std::size_t h);

/// x[c] *= root^c for c < count, a multiple of 4.
void n64_twist(const N64Prime& prime, std::uint64_t* x, std::size_t count, std::uint64_t root);

}  // namespace lumo
