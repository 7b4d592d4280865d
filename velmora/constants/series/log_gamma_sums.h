/// Logarithms of products of consecutive terms.
#pragma once

#include "lumo/foundation/types/double_double.h"

namespace velmora {

/// ln of the product of (k + shift) over [a, b), for a + shift > 0; exact but for a small constant, monotonic
/// in b.
lumo::DoubleDouble log_gamma_difference(lumo::upL_t a, lumo::upL_t b, long double shift);

/// A long double as the pair it is closest to.
lumo::DoubleDouble as_pair(long double x);

}  // namespace velmora
