/// Catalan's constant by a series of BBP type in nine squares.
#pragma once

#include "lumo/series/series_common_p2b3.h"

namespace velmora {

/// With j = k - 1 and D(j) the square of the product of f(j) = 12j+1, 6j+1, 4j+1, 12j+5, 2j+1, 12j+7, 4j+3,
/// 6j+5, 12j+11: P = sum of c_f D / f^2, Q = 64 D, R = -D. The sum is 12 times the constant.
/// Source: Huvent, "Formules BBP" (2006).
template <typename wtype>
class SeriesCatalanHuvent final : public lumo::SeriesCommonP2B3<wtype> {
 public:
    SeriesCatalanHuvent();
    lumo::DoubleDouble block_size(lumo::upL_t a, lumo::upL_t b) const override;
    void term(lumo::LeafTerm<wtype>& out, lumo::upL_t k) const override;
    unsigned common_power() const override { return 18; }
};

}  // namespace velmora
