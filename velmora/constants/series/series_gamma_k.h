/// The third sum of Brent and McMillan for Euler's constant, an asymptotic one.
#pragma once

#include "lumo/series/series_common_p2b3.h"

namespace velmora {

/// With n = 2^k the terms from j = 1 on of the sum of ((2j)!)^3 / (j!^4 (16 n)^(2j)): P = R = (2j-1)^3,
/// Q = 32 j n^2. The terms shrink up to j = 2n, where they are about e^(-4n).
/// Source: Brent and Johansson, "A bound for the error term in the Brent-McMillan algorithm" (2015).
template <typename wtype>
class SeriesGammaK final : public lumo::SeriesCommonP2B3<wtype> {
 public:
    explicit SeriesGammaK(unsigned k);
    lumo::DoubleDouble block_size(lumo::upL_t a, lumo::upL_t b) const override;
    void term(lumo::LeafTerm<wtype>& out, lumo::upL_t j) const override;
    lumo::DoubleDouble remaining(lumo::upL_t j, lumo::upL_t end) const override;
    /// At most 2n.
    lumo::upL_t terms_for(lumo::DoubleDouble size) const override;

 private:
    /// -ln of the term j.
    long double decrease(lumo::upL_t j) const;
    unsigned exponent;
};

}  // namespace velmora
