/// Factorings, as exponents by prime.
#pragma once

#include <cstdint>
#include <map>
#include <span>

namespace velmora::machin {

/// Prime to exponent; no exponent is 0.
using Exponents = std::map<std::uint64_t, std::int64_t>;

/// The primes below 20: the largest smooth set.
inline constexpr std::uint64_t SMALL_PRIMES[] = {2, 3, 5, 7, 11, 13, 17, 19};

/// n >= 1 by trial division up to 10^6, every exponent times `scale`. What is left above counts as a prime,
/// which it is for n up to 10^12.
Exponents factor(std::uint64_t n, std::int64_t scale);

/// sum += added.
void add(Exponents& sum, const Exponents& added);

/// n without its factors among the first `count` small primes.
std::uint64_t rough_part(std::uint64_t n, std::size_t count);

}  // namespace velmora::machin
