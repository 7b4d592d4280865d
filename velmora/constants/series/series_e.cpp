#include "velmora/constants/series/series_e.h"

#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {

using lumo::DoubleDouble;
using lumo::upL_t;

template <typename wtype>
SeriesETaylor<wtype>::SeriesETaylor(bool alternating_)
    : lumo::SeriesCommonP2B3<wtype>({DoubleDouble(0), DoubleDouble(0)}, 31, 32), alternating(alternating_) {
    this->hyperdescent = true;
}

template <typename wtype>
DoubleDouble SeriesETaylor<wtype>::block_size(upL_t a, upL_t b) const {
    return log_gamma_difference(a, b, 0);
}

template <typename wtype>
void SeriesETaylor<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    out.P[0] = 1;
    out.PL = 1;
    out.P_positive = !alternating || k % 2 == 0;
    LeafProduct<wtype> Q(out.Q);
    Q.multiply(k);
    out.QL = Q.length();
}

template <typename wtype>
DoubleDouble SeriesETaylor<wtype>::remaining(upL_t k, upL_t end) const {
    return end > k ? block_size(k, end) : DoubleDouble(0);
}

template <typename wtype>
upL_t SeriesETaylor<wtype>::terms_for(DoubleDouble size) const {
    upL_t lo = 0;
    upL_t hi = 1;
    while (size > block_size(1, hi + 1)) hi *= 2;
    while (hi - lo > 1) {
        const upL_t m = lo + (hi - lo) / 2;
        (size > block_size(1, m + 1) ? lo : hi) = m;
    }
    return hi + 1;
}

template class SeriesETaylor<std::uint32_t>;
template class SeriesETaylor<std::uint64_t>;

}  // namespace velmora
