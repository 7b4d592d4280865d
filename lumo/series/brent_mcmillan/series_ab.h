/// The two coupled sums of Brent and McMillan for Euler's constant, with n = 2^k.
///
/// Over the terms [a, b), with S = n^(2 (b - a)): T / D^2 is the sum of the products of n^2 / i^2 from a to j
/// over all j, V / D^3 the same weighted by the sums of 1 / i, C / D the sum of all 1 / i, D the product of
/// all i. For a range cut in two (0 left, 1 right):
///   T = T0 D1^2 + S0 T1          V = V0 D1^3 + S0 (C0 D1 T1 + D0 V1)
///   C = C0 D1 + C1 D0            D = D0 D1
/// All are positive integers; S is a shift. Sizes are natural logarithms, lengths words of `wtype`.
/// Source: Brent and McMillan, "Some new algorithms for high-precision computation of Euler's constant"
/// (1980).
#pragma once

#include "lumo/series/series_common_p2b3.h"

namespace lumo {

template <typename wtype>
class SeriesBrentMcMillanAB {
 public:
    explicit SeriesBrentMcMillanAB(unsigned k);

    unsigned k() const { return exponent; }
    /// ln D over [a, b), 1 <= a <= b.
    DoubleDouble log_D(upL_t a, upL_t b) const;
    /// ln V over [a, b) but for a small constant; monotonic in b.
    DoubleDouble block_size(upL_t a, upL_t b) const;
    /// Upper bounds.
    upL_t D_words(upL_t a, upL_t b) const;
    upL_t C_words(upL_t a, upL_t b) const;
    upL_t T_words(upL_t a, upL_t b) const;
    upL_t V_words(upL_t a, upL_t b) const;
    /// The point that cuts [a, b) into halves of equal D.
    upL_t split(upL_t a, upL_t b) const;
    /// Precision that the terms from a on need for a sum of precision `size`.
    DoubleDouble remaining(upL_t a, DoubleDouble size) const;
    /// Terms after which the rest lies below e^-size of the sum.
    upL_t terms_for(DoubleDouble size) const;

 private:
    /// ln of the largest product of n^2 / i^2 from a on within [a, b), 0 when all are below one.
    long double growth(upL_t a, upL_t b) const;
    /// 2 ln(n^a / a!) - 2 n: of a term against the sum of all.
    long double weight(upL_t a) const;
    upL_t words(long double size, upL_t a, upL_t b) const;

    unsigned exponent;
    long double log_n;
    long double n;
};

}  // namespace lumo
