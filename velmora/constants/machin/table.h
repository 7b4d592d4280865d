/// Known formulas of small numbers.
#pragma once

#include "velmora/constants/machin/formula.h"

namespace velmora::machin {

/// Two formulas of one number share no argument, so that one verifies the other.
enum class Which { primary, secondary };

/// Appends `scale` times the formula of n to `out` and returns its cost; NO_FORMULA, and nothing appended,
/// when the table has no entry. log(1) costs nothing.
double lookup(std::uint64_t n, std::int64_t scale, Which which, double d, Formula& out);

}  // namespace velmora::machin
