/// The Taylor series of ArcCoth(x) = sum of 1 / ((2k + 1) x^(2k + 1)).
#pragma once

#include <memory>

#include "lumo/series/psr_series.h"

namespace velmora {

/// The terms from k = 1 on, times x: P = R = 2k - 1, Q = (2k + 1) x^2. Throws InvalidParametersException at
/// "Series_ArcCoth_Base()": "Argument is too small." for x < 2, "Argument is too large." for 2^62 and above.
template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> Series_ArcCoth_Base(std::uint64_t x);

/// ArcCoth(x) = (P + Q) / (x Q).
lumo::SeriesCoefficients arccoth_coefficients(std::uint64_t x);

}  // namespace velmora
