/// The primes of the 64-bit transform: for each kind of length the three largest c 2^48 + 1 up to
/// 0x7fb9000000000001 that have roots for it, with their roots.
#pragma once

#include <array>

#include "lumo/multiply/ntt/n64/n64_field.h"

namespace lumo {

inline constexpr unsigned N64_PRIMES = 3;
inline constexpr std::uint64_t N64_LARGEST_PRIME = 0x7fb9000000000001;
inline constexpr unsigned N64_MOST_TWOS = 56;

struct N64Prime {
    N64Field field;
    std::uint64_t unit;                                  ///< 2^64, the factor 1 of mul_var()
    N64Factor one;                                       ///< reduces a word
    std::array<std::uint64_t, N64_MOST_TWOS + 1> order;  ///< [k]: E(1 / 2^k)
    std::array<std::uint64_t, N64_MOST_TWOS + 1> inverse_order;
    const N64Factor* roots;  ///< [t] = E(reversed(t) / 2), reversed(t) = 0.b0 b1 b2 ... of t = ... b2 b1 b0
    const N64Factor* inverse_roots;
    std::uint64_t odd_order;  ///< of order m
    N64Factor cosines[3];     ///< (w^j + w^-j) / 2 of that
    N64Factor sines[3];       ///< (w^j - w^-j) / 2
};

using N64PrimeSet = std::array<N64Prime, N64_PRIMES>;

/// True if there are such primes for m 2^k points, and the sums of products of words stay below their
/// product.
bool n64_primes_hold(unsigned m, unsigned k);
/// For m 2^k points for which there are primes, with roots for transforms of up to 2^levels elements. Built
/// when first asked for and kept; thread-safe; allocates only when there is no set yet or its roots are too
/// few.
const N64PrimeSet& n64_prime_set(unsigned m, unsigned k, unsigned levels);

}  // namespace lumo
