/// What the number-theoretic transforms and those who use them pass to each other.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/foundation/types/types.h"

namespace lumo {

/// How the tables know a transform.
struct NttIdentity {
    const char *tag, *name, *version;
    upL_t max_bits;
};

/// Primes [from, to) of a transform.
struct PrimeRange {
    unsigned from, to;
};

/// Bytes of a product that are wanted, and where they go. Multiples of 4.
struct NttWindow {
    unsigned char* bytes;
    upL_t begin, end;
};

/// What putting a product together tells of it.
struct NttOutcome {
    std::uint64_t sum;  ///< of all its words, wanted or not, modulo 2^64 - 1
    bool plausible;     ///< no coefficient above what digits of this size can give
};

constexpr std::uint64_t add_around(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t sum = a + b;
    return sum + (sum < b);
}

/// Sum of the words of an operand modulo 2^64 - 1.
std::uint64_t ntt_sum(const ParallelContext& ctx, const unsigned char* bytes, upL_t count);

}  // namespace lumo
