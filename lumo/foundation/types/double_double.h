/// A pair of doubles as one number of about 106 bits: sizes as natural logarithms, digit counts to 10^15,
/// seeds of iterations.
/// Source: Dekker, "A floating-point technique for extending the available precision" (1971).
#pragma once

#include <cmath>
#include <string_view>

#include "lumo/foundation/types/types.h"

namespace lumo {

struct DoubleDouble {
    double hi = 0;
    double lo = 0;

    constexpr DoubleDouble() = default;
    constexpr DoubleDouble(double h, double l = 0) : hi(h), lo(l) {}
    /// Exact: the high and the low 32 bits are doubles of their own.
    static DoubleDouble from_count(upL_t n) {
        return two_sum(static_cast<double>(n >> 32) * 4294967296.0, static_cast<double>(n & 0xffffffffu));
    }
    /// Digits with an optional point; the value is correct to the pair's precision.
    static DoubleDouble parse(std::string_view text);
    static DoubleDouble two_sum(double a, double b) {
        const double s = a + b;
        const double t = s - a;
        return {s, (a - (s - t)) + (b - t)};
    }
    static DoubleDouble quick_sum(double a, double b) {
        const double s = a + b;
        return {s, b - (s - a)};
    }

    friend DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
        const DoubleDouble s = two_sum(a.hi, b.hi);
        return quick_sum(s.hi, s.lo + (a.lo + b.lo));
    }
    friend DoubleDouble operator-(DoubleDouble a) { return {-a.hi, -a.lo}; }
    friend DoubleDouble operator-(DoubleDouble a, DoubleDouble b) { return a + -b; }
    friend DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
        const double p = a.hi * b.hi;
        return quick_sum(p, std::fma(a.hi, b.hi, -p) + (a.hi * b.lo + a.lo * b.hi));
    }
    friend DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
        const double q = a.hi / b.hi;
        const DoubleDouble r = a - b * DoubleDouble(q);
        const double q2 = r.hi / b.hi;
        const DoubleDouble r2 = r - b * DoubleDouble(q2);
        return quick_sum(q, q2) + DoubleDouble(r2.hi / b.hi);
    }
    friend bool operator<(DoubleDouble a, DoubleDouble b) {
        return a.hi < b.hi || (a.hi == b.hi && a.lo < b.lo);
    }
    friend bool operator>(DoubleDouble a, DoubleDouble b) { return b < a; }
    friend bool operator>=(DoubleDouble a, DoubleDouble b) { return !(a < b); }

    /// Towards zero; 0 for negative values. Requires a value below 2^63.
    upL_t truncate() const {
        if (hi < 0) return 0;
        const auto whole = static_cast<upL_t>(hi);
        const double rest = (hi - static_cast<double>(whole)) + lo;
        return whole + static_cast<upL_t>(static_cast<spL_t>(std::floor(rest)));
    }
    upL_t round() const { return (*this + DoubleDouble(0.5)).truncate(); }
};

/// ln 2 to 107 bits.
inline constexpr DoubleDouble LN2_PAIR{0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};

/// |x| < 700; the relative error grows with |x|, 2^-101 for each unit.
DoubleDouble exp(DoubleDouble x);
/// x > 0; the absolute error is 2^-101 for each unit of the result, at least one.
DoubleDouble log(DoubleDouble x);

}  // namespace lumo
