/// The generator of Machin-like formulas.
#pragma once

#include "velmora/constants/machin/table.h"

namespace velmora::machin {

/// The largest n whose logarithm is looked for.
inline constexpr std::uint64_t LARGEST_ARGUMENT = 1000000000000;

struct SearchResult {
    Formula formula;
    double cost = NO_FORMULA;  ///< NO_FORMULA when none was found
    bool beats_table = false;  ///< the table has a formula that might be used, of higher cost
};

/// The cheapest formula of log(n) for 1 <= n <= LARGEST_ARGUMENT, in at most 32 terms: the table's, or one
/// over the first 4 to 8 primes, in which every larger prime of n has an argument of its own. The secondary
/// formula shares no argument with the primary one.
SearchResult search_primary(std::uint64_t n, double d);
SearchResult search_secondary(const Formula& primary, double d);

}  // namespace velmora::machin
