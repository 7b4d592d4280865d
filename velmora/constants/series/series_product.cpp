#include "velmora/constants/series/series_product.h"

#include <algorithm>

#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

template <typename wtype>
void multiply_factors(LeafProduct<wtype>& product, const Factors& constants,
                      std::span<const LinearFactor> factors, upL_t k) {
    for (const std::uint64_t constant : constants) product.multiply(constant);
    for (const LinearFactor& factor : factors)
        product.multiply(factor.a * k + static_cast<std::uint64_t>(factor.b), factor.power);
}

}  // namespace

template <typename wtype>
SeriesProduct<wtype>::SeriesProduct(const ProductTerms& product_terms)
    : lumo::SeriesCommonP2B3<wtype>(product_terms.rates, product_terms.overhead_words,
                                    product_terms.leaf_terms),
      terms(product_terms) {
    // R does not exceed Q, and neither does a polynomial that stands without it.
    if (terms.P_contains_R) this->excess_bits = 64 * terms.polynomial.size();
}

template <typename wtype>
DoubleDouble SeriesProduct<wtype>::block_size(upL_t a, upL_t b) const {
    DoubleDouble size = DoubleDouble::from_count(b - a) * this->rates.size;
    for (const LinearFactor& factor : terms.Q) {
        const long double shift = static_cast<long double>(factor.b) / static_cast<long double>(factor.a);
        size = size + DoubleDouble(factor.power) * log_gamma_difference(a, b, shift);
    }
    return size;
}

template <typename wtype>
unsigned SeriesProduct<wtype>::common_power() const {
    const auto factors = [](std::span<const LinearFactor> list) {
        unsigned sum = 0;
        for (const LinearFactor& factor : list) {
            std::uint64_t a = factor.a;
            for (const unsigned p : {2, 3}) {
                while (a % p == 0) a /= p;
            }
            if (a == 1) sum += factor.power;
        }
        return sum;
    };
    return std::min(factors(terms.Q), factors(terms.R));
}

template <typename wtype>
void SeriesProduct<wtype>::multiply_R(LeafProduct<wtype>& product, upL_t k) const {
    multiply_factors(product, terms.R_constants, terms.R, k);
}

template <typename wtype>
void SeriesProduct<wtype>::multiply_Q(LeafProduct<wtype>& product, upL_t k) const {
    multiply_factors(product, terms.Q_constants, terms.Q, k);
}

template <typename wtype>
upL_t SeriesProduct<wtype>::set_p(wtype* words, upL_t k) const {
    LeafProduct<wtype> product(words, set_polynomial(words, terms.polynomial, k));
    if (!terms.P_contains_R) multiply_factors(product, terms.P_constants, {}, k);
    return product.length();
}

template <typename wtype>
void SeriesProduct<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    LeafProduct<wtype> Q(out.Q), R(out.R);
    multiply_Q(Q, k);
    multiply_R(R, k);
    out.QL = Q.length();
    out.RL = R.length();
    out.R_positive = !terms.alternating;
    out.P_positive = !terms.alternating || !terms.P_contains_R;
    if (!terms.P_contains_R) {
        out.PL = set_p(out.P, k);
        return;
    }
    wtype p[lumo::LeafTerm<wtype>::MAX_WORDS];
    out.PL = lumo::add_words_product(out.P, 0, out.R, out.RL, p, set_p(p, k));
}

template <typename wtype>
void SeriesProduct<wtype>::end(upL_t a, upL_t b, lumo::Parts<wtype>& out) const {
    make_factor_leaf<wtype>(*this, a, b, terms.alternating, terms.P_contains_R, out);
}

template class SeriesProduct<std::uint32_t>;
template class SeriesProduct<std::uint64_t>;

}  // namespace velmora
