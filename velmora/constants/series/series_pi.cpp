#include "velmora/constants/series/series_pi.h"

#include "lumo/foundation/errors/fatal.h"
#include "lumo/series/bsr_objects.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

constexpr upL_t MOST_LEAF_TERMS = 12;

constexpr PiTerms CHUDNOVSKY{"36.93111616078457130182132488791258602081",
                             "32.65445004176851599077913804969300490729",
                             8,
                             true,
                             6,
                             5,
                             13591409,
                             545140134,
                             32768,
                             333833583375};
constexpr PiTerms RAMANUJAN{"21.84621530333808625449589681453160567684",
                            "18.38047627747241588639166145022043732094",
                            12,
                            false,
                            4,
                            3,
                            1103,
                            26390,
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
    LeafProduct<wtype> P(out.P), Q(out.Q), R(out.R);
    multiply_R(P, k);
    P.multiply(terms.d * k + terms.c);
    multiply_Q(Q, k);
    multiply_R(R, k);
    out.PL = P.length();
    out.QL = Q.length();
    out.RL = R.length();
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

/// Term by term: P' = P Q + R' (c + d k), all by single words. The terms fall so fast that the first one's
/// sign is that of P.
template <typename wtype>
void SeriesPi<wtype>::end(upL_t a, upL_t b, lumo::Parts<wtype>& out) const {
    constexpr upL_t WORDS = (3 * MOST_LEAF_TERMS + 2) * 64 / lumo::WordTraits<wtype>::bits;
    lumo::require(b - a <= MOST_LEAF_TERMS, "A leaf has grown beyond its words.", "SeriesPi::end()");
    wtype P[WORDS], Q[WORDS], R[WORDS];
    upL_t PL = 0, QL = 1, RL = 1;
    Q[0] = R[0] = 1;
    for (upL_t k = a; k != b; ++k) {
        LeafProduct<wtype> ratio(R, RL), denominator(Q, QL), numerator(P, PL);
        multiply_R(ratio, k);
        multiply_Q(denominator, k);
        multiply_Q(numerator, k);
        RL = ratio.length();
        QL = denominator.length();
        PL = numerator.length();
        const bool like_first = !terms.alternating || (k - a) % 2 == 0;
        const std::uint64_t m = terms.d * k + terms.c;
        PL = like_first ? lumo::add_product(P, PL, R, RL, m) : lumo::subtract_product(P, PL, R, RL, m);
    }
    set_words(out.P, P, PL, !terms.alternating);
    set_words(out.Q, Q, QL, true);
    out.Q.strip_lzs_aligned();
    if (out.need_R) set_words(out.R, R, RL, !terms.alternating || (b - a) % 2 == 0);
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
