#include "lumo/multiply/fft/unit_roots.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace lumo {

UnitRoots::UnitRoots(upL_t m, unsigned e) : D(m << e) {
    auto exact = [this](upL_t n) {
        long double angle = 2 * std::numbers::pi_v<long double> * (static_cast<long double>(n) / D);
        return Root{std::cos(angle), std::sin(angle)};
    };
    // Angles up to one eighth of a turn; the rest follows by symmetry, without rounding.
    for (upL_t n = 0; n <= D / 8; n += upL_t(1) << LOW) coarse.push_back(exact(n));
    for (upL_t n = 0; n < upL_t(1) << LOW; n++) fine.push_back(exact(n));
}

void UnitRoots::get(upL_t n, double* out) const {
    const upL_t eighth = D / 8;
    n %= D;
    const unsigned octant = unsigned(n / eighth);
    n %= eighth;
    if (octant & 1) n = eighth - n;
    const Root &a = coarse[n >> LOW], &b = fine[n & ((upL_t(1) << LOW) - 1)];
    double c = double(a.cos * b.cos - a.sin * b.sin);
    double s = double(a.sin * b.cos + a.cos * b.sin);
    if ((octant + 1) & 2) std::swap(c, s);
    out[0] = octant >= 2 && octant < 6 ? -c : c;
    out[1] = octant >= 4 ? -s : s;
}

}  // namespace lumo
