/// The primes of the vector transforms: c 2^37 + 1 up to 0xf78000000001, largest first.
#pragma once

#include <span>

#include "lumo/foundation/types/types.h"

namespace lumo {

inline constexpr unsigned VT3_PRIME_SHIFT = 37;

/// The 119 factors c.
std::span<const std::uint16_t> vt3_prime_factors();

constexpr std::uint64_t vt3_prime_value(std::uint16_t c) {
    return (std::uint64_t(c) << VT3_PRIME_SHIFT) + 1;
}

}  // namespace lumo
