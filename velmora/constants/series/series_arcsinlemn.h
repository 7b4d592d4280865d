/// The series of the inverse lemniscate sine.
#pragma once

#include <memory>

#include "lumo/series/psr_series.h"

namespace velmora {

/// The terms from k = 1 on of ArcSinlemn(x / y) y / x. With X = x^4 and Y = y^4: P = (2k-1) X,
/// Q = (4k+1) 2k Y, R = (2k-1)(4k+1) X. Throws InvalidParametersException at "ArcSinlemn(x/y)":
/// "Argument for ArcSinlemn is invalid: " and x for x < 1, "x must be less than y or series won't converge.",
/// "y^4 doesn't fit into a machine word: " and y, "x/y is too close to 1.0. Series converges too slowly.".
template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> make_arcsinlemn_series(std::int64_t x, std::int64_t y);

/// ArcSinlemn(x / y) = x (P + Q) / (y Q).
lumo::SeriesCoefficients arcsinlemn_coefficients(std::int64_t x, std::int64_t y);

}  // namespace velmora
