/// Residues modulo primes below 2^63 in words, always reduced: four times such a prime may be no word.
/// Sources: Shoup for products by constants, Montgomery (1985) for those of two residues.
#pragma once

#include <algorithm>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// A constant w < p with floor(w 2^64 / p).
struct N64Factor {
    std::uint64_t w, q;
};

inline N64Factor n64_factor(std::uint64_t w, std::uint64_t p) {
    return {w, static_cast<std::uint64_t>((static_cast<unsigned __int128>(w) << 64) / p)};
}

struct N64Field {
    std::uint64_t p;
    std::uint64_t p_inverse;  ///< modulo 2^64

    std::uint64_t add(std::uint64_t a, std::uint64_t b) const { return reduce(a + b); }
    std::uint64_t sub(std::uint64_t a, std::uint64_t b) const {
        const std::uint64_t difference = a - b;
        return std::min(difference, difference + p);
    }
    /// a is any word.
    std::uint64_t mul(std::uint64_t a, const N64Factor& c) const {
        return reduce(a * c.w - high(a, c.q) * p);
    }
    /// a b / 2^64.
    std::uint64_t mul_var(std::uint64_t a, std::uint64_t b) const {
        const unsigned __int128 t = static_cast<unsigned __int128>(a) * b;
        return sub(static_cast<std::uint64_t>(t >> 64), high(static_cast<std::uint64_t>(t) * p_inverse, p));
    }

 private:
    static std::uint64_t high(std::uint64_t a, std::uint64_t b) {
        return static_cast<std::uint64_t>((static_cast<unsigned __int128>(a) * b) >> 64);
    }
    /// Below 2 p.
    std::uint64_t reduce(std::uint64_t a) const { return std::min(a, a - p); }
};

}  // namespace lumo
