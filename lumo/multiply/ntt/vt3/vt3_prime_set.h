/// The n primes of one kind of length, and what joins their residues.
#pragma once

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo {

struct Vt3PrimeSet {
    unsigned n;
    unsigned index[kernels::VT3_MAX_PRIMES];  ///< into vt3_prime_factors()
    std::uint64_t p[kernels::VT3_MAX_PRIMES];
    std::uint64_t cofactor_inverse[kernels::VT3_MAX_PRIMES];  ///< (M / p_i)^-1 mod p_i
    std::uint64_t product[8];                                 ///< M
    kernels::Vt3Crt crt;                                      ///< without primes

    /// True if m 2^k products of digits of b bits stay below M / 2^spare.
    bool holds(unsigned m, unsigned k, unsigned b, unsigned spare = 2) const;
};

/// The n largest primes for m 2^k points; null if there are not so many. Thread-safe.
const Vt3PrimeSet* vt3_prime_set(unsigned n, unsigned m, unsigned k);

}  // namespace lumo
