/// Arguments x of ArcCoth whose neighbours x - 1 and x + 1 have small primes only, but for one prime at most.
#pragma once

#include <array>
#include <optional>
#include <set>
#include <vector>

#include "velmora/constants/machin/factors.h"

namespace velmora::machin {

/// 2 ArcCoth(x) as a sum of logarithms of small primes.
struct SmoothArgument {
    std::uint64_t x;
    std::array<std::int8_t, std::size(SMALL_PRIMES)> exponents;
};

/// All x up to 1,500,000 over the first `count` small primes, largest first. Made at first use.
const std::vector<SmoothArgument>& smooth_arguments(std::size_t count);

/// The largest x that is not in `used`, of which one neighbour is q times a product of the first `count`
/// small primes, and the other such a product, perhaps times one number below q; the smallest such number
/// wins. q is a prime below 2^41 outside the small set. Nothing when there is none.
std::optional<std::uint64_t> argument_with_prime(std::uint64_t q, std::size_t count,
                                                 const std::set<std::uint64_t>& used);

}  // namespace velmora::machin
