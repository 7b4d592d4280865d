#include "velmora/constants/series/series_gamma_k.h"

#include <cmath>

#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {

using lumo::DoubleDouble;
using lumo::upL_t;

template <typename wtype>
SeriesGammaK<wtype>::SeriesGammaK(unsigned k)
    : lumo::SeriesCommonP2B3<wtype>({DoubleDouble(2 * k + 5) * lumo::LN2_PAIR, DoubleDouble(0)}, 31, 12),
      exponent(k) {}

template <typename wtype>
DoubleDouble SeriesGammaK<wtype>::block_size(upL_t a, upL_t b) const {
    return DoubleDouble::from_count(b - a) * this->rates.size + log_gamma_difference(a, b, 0);
}

template <typename wtype>
void SeriesGammaK<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t j) const {
    LeafProduct<wtype> R(out.R);
    R.multiply(2 * j - 1, 3);
    out.RL = R.length();
    std::copy_n(out.R, out.RL, out.P);
    out.PL = out.RL;
    out.P_positive = out.R_positive = true;
    LeafProduct<wtype> Q(out.Q);
    Q.multiply(j);
    Q.multiply(upL_t(32) << exponent);
    Q.multiply(upL_t(1) << exponent);
    out.QL = Q.length();
}

template <typename wtype>
long double SeriesGammaK<wtype>::decrease(upL_t j) const {
    const auto x = static_cast<long double>(j);
    return 2 * (x * (exponent + 1) * std::log(2.0L) - lumo::log_gamma(x + 1));
}

template <typename wtype>
DoubleDouble SeriesGammaK<wtype>::remaining(upL_t j, upL_t end) const {
    return end > j ? as_pair(decrease(end - 1) - decrease(j - 1)) : DoubleDouble(0);
}

template <typename wtype>
upL_t SeriesGammaK<wtype>::terms_for(DoubleDouble size) const {
    const long double target = static_cast<long double>(size.hi) + static_cast<long double>(size.lo);
    upL_t lo = 0;
    upL_t hi = upL_t(2) << exponent;
    while (hi - lo > 1) {
        const upL_t m = lo + (hi - lo) / 2;
        (decrease(m) < target ? lo : hi) = m;
    }
    return hi;
}

template class SeriesGammaK<std::uint32_t>;
template class SeriesGammaK<std::uint64_t>;

}  // namespace velmora
