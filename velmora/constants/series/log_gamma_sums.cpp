#include "velmora/constants/series/log_gamma_sums.h"

#include <cmath>

#include "lumo/series/series_common_p2b3.h"

namespace velmora {
namespace {

/// Stirling's series needs arguments of at least one.
long double log_gamma_of(long double x) {
    return x < 1 ? lumo::log_gamma(x + 1) - std::log(x) : lumo::log_gamma(x);
}

}  // namespace

lumo::DoubleDouble as_pair(long double x) {
    const auto high = static_cast<double>(x);
    return {high, static_cast<double>(x - static_cast<long double>(high))};
}

lumo::DoubleDouble log_gamma_difference(lumo::upL_t a, lumo::upL_t b, long double shift) {
    return as_pair(log_gamma_of(static_cast<long double>(b) + shift) -
                   log_gamma_of(static_cast<long double>(a) + shift));
}

}  // namespace velmora
