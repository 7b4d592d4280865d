/// The Taylor series of exp(1) and exp(-1) without their first term: a hyperdescent series.
#pragma once

#include "lumo/series/series_common_p2b3.h"

namespace velmora {

/// Term k >= 1 has Q = k and P = 1, with `alternating` P = (-1)^k: the sum is that of (+-1)^k / k!.
template <typename wtype>
class SeriesETaylor final : public lumo::SeriesCommonP2B3<wtype> {
 public:
    explicit SeriesETaylor(bool alternating);
    /// ln((b - 1)! / (a - 1)!).
    lumo::DoubleDouble block_size(lumo::upL_t a, lumo::upL_t b) const override;
    void term(lumo::LeafTerm<wtype>& out, lumo::upL_t k) const override;
    /// By words: P_k = P_(k-1) k +- 1 and Q_k = Q_(k-1) k, a few terms at a time.
    void end(lumo::upL_t a, lumo::upL_t b, lumo::Parts<wtype>& out) const override;
    lumo::DoubleDouble remaining(lumo::upL_t k, lumo::upL_t end) const override;
    /// The smallest N with ln N! above `size`.
    lumo::upL_t terms_for(lumo::DoubleDouble size) const override;

 private:
    bool alternating;
};

}  // namespace velmora
