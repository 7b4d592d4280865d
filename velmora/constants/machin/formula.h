/// Machin-like formulas: log(n) as a sum of c ArcCoth(x) with whole coefficients.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::machin {

struct Term {
    std::uint64_t x;
    std::int64_t c;
};

struct Formula {
    std::uint64_t n = 1;
    std::vector<Term> terms;  ///< by ascending x; empty for log(1)
};

/// Costs are in units of the size to be reached; this one stands for "no formula".
inline constexpr double NO_FORMULA = 1.2676506002282294e30;

/// Cost of ArcCoth(x) to the size d, a natural logarithm.
double cost(std::uint64_t x, double d);
/// Sum over the terms, divided by d.
double cost(const Formula& formula, double d);

/// The size that formulas are ranked for: that of 10^9 decimal digits.
inline constexpr double RANKING_SIZE = 2302585092.994045684;

/// Whether the sum is log(n): exact, by the primes of every x - 1 and x + 1. All of them must be found by
/// trial division up to 10^6.
bool verify(const Formula& formula);

/// "Log[n] = " and one line a term.
std::string to_text(const Formula& formula);

}  // namespace velmora::machin
