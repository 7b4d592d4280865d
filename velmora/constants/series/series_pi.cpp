#include "velmora/constants/series/series_pi.h"

#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

constexpr PiTerms CHUDNOVSKY{"36.93111616078457130182132488791258602081",
                             "32.65445004176851599077913804969300490729",
                             8,
                             true,
                             6,
                             5,
                             {13591409, 545140134},
                             32768,
                             333833583375};
constexpr PiTerms RAMANUJAN{"21.84621530333808625449589681453160567684",
                            "18.38047627747241588639166145022043732094",
                            12,
                            false,
                            4,
                            3,
                            {1103, 26390},
                            32,
                            96059601};

}  // namespace

template <typename wtype>
SeriesPi<wtype>::SeriesPi(const PiTerms& pi_terms)
    : lumo::SeriesCommonP2B3<wtype>(
          {DoubleDouble::parse(pi_terms.rate_size), DoubleDouble::parse(pi_terms.rate_converge)}, 31,
          pi_terms.leaf_terms),
      terms(pi_terms) {}

template <typename wtype>
DoubleDouble SeriesPi<wtype>::block_size(upL_t a, upL_t b) const {
    return DoubleDouble::from_count(b - a) * this->rates.size +
           DoubleDouble(3) * log_gamma_difference(a, b, 0);
}

template <typename wtype>
void SeriesPi<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    LeafProduct<wtype> Q(out.Q), R(out.R);
    multiply_Q(Q, k);
    multiply_R(R, k);
    out.QL = Q.length();
    out.RL = R.length();
    wtype p[lumo::LeafTerm<wtype>::MAX_WORDS];
    out.PL = lumo::add_words_product(out.P, 0, out.R, out.RL, p, set_p(p, k));
    out.P_positive = out.R_positive = !terms.alternating;
}

template <typename wtype>
void SeriesPi<wtype>::multiply_R(LeafProduct<wtype>& product, upL_t k) const {
    product.multiply(2 * k - 1);
    product.multiply(terms.a * k - terms.b);
    product.multiply(terms.a * k - 1);
}

/// In an order that gathers to two factors for all k below 2^24.
template <typename wtype>
void SeriesPi<wtype>::multiply_Q(LeafProduct<wtype>& product, upL_t k) const {
    product.multiply(k, 2);
    product.multiply(terms.f);
    product.multiply(k);
    product.multiply(terms.g);
}

template <typename wtype>
upL_t SeriesPi<wtype>::set_p(wtype* words, upL_t k) const {
    return set_polynomial<wtype>(words, terms.p, k);
}

template <typename wtype>
void SeriesPi<wtype>::end(upL_t a, upL_t b, lumo::Parts<wtype>& out) const {
    make_factor_leaf<wtype>(*this, a, b, terms.alternating, true, out);
}

template <typename wtype>
SeriesPiChudnovsky<wtype>::SeriesPiChudnovsky() : SeriesPi<wtype>(CHUDNOVSKY) {}

template <typename wtype>
SeriesPiRamanujan<wtype>::SeriesPiRamanujan() : SeriesPi<wtype>(RAMANUJAN) {}

template class SeriesPi<std::uint32_t>;
template class SeriesPi<std::uint64_t>;
template class SeriesPiChudnovsky<std::uint32_t>;
template class SeriesPiChudnovsky<std::uint64_t>;
template class SeriesPiRamanujan<std::uint32_t>;
template class SeriesPiRamanujan<std::uint64_t>;

}  // namespace velmora
