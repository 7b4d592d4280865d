/// The Taylor series of ArcCoth(x) = sum of 1 / ((2k - 1) x^(2k - 1)) over k >= 1, a series that falls by
/// x^2.
#pragma once

#include <memory>

#include "lumo/series/psr_series.h"

namespace velmora {

/// With n = 2k - 1, s = ARCCOTH_COMMON and g = gcd(n, s) the term is (s / g) / (n / g) / x^(2k): the small
/// primes of all the odd numbers stand once in s and not in every product. The sum is s ArcCoth(x) / x.
///
/// Throws InvalidParametersException at "Series_ArcCoth_Base()": "Argument is too small." for x < 2,
/// "Argument is too large." for 2^62 and above, with words of 32 bits for an odd part beyond a word.
template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> Series_ArcCoth_Base(std::uint64_t x);

/// The least common multiple of the odd numbers up to 46: it must fit into a coefficient.
inline constexpr std::uint64_t ARCCOTH_COMMON =
    std::uint64_t(27) * 25 * 7 * 11 * 13 * 17 * 19 * 23 * 29 * 31 * 37 * 41 * 43;

/// ArcCoth(x) = x P / (s Q).
lumo::SeriesCoefficients arccoth_coefficients(std::uint64_t x);

}  // namespace velmora
