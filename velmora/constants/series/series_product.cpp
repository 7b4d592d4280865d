#include "velmora/constants/series/series_product.h"

#include <bit>

#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

template <typename wtype>
upL_t set_factors(wtype* out, const Factors& constants, std::span<const LinearFactor> factors, upL_t k) {
    LeafProduct<wtype> product(out);
    for (const std::uint64_t constant : constants) product.multiply(constant);
    for (const LinearFactor& factor : factors)
        product.multiply(factor.a * k + static_cast<std::uint64_t>(factor.b), factor.power);
    return product.length();
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
void SeriesProduct<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    constexpr upL_t POLYNOMIAL_WORDS = 16;
    wtype value[POLYNOMIAL_WORDS];
    wtype others[lumo::LeafTerm<wtype>::MAX_WORDS];
    out.QL = set_factors(out.Q, terms.Q_constants, terms.Q, k);
    out.RL = set_factors(out.R, terms.R_constants, terms.R, k);
    out.R_positive = !terms.alternating;
    out.P_positive = !terms.alternating || !terms.P_contains_R;
    const upL_t L = set_polynomial(value, terms.polynomial, k);
    if (terms.P_contains_R) {
        out.PL = set_words_product(out.P, out.R, out.RL, value, L);
    } else {
        const upL_t others_length = set_factors(others, terms.P_constants, {}, k);
        out.PL = set_words_product(out.P, others, others_length, value, L);
    }
}

template class SeriesProduct<std::uint32_t>;
template class SeriesProduct<std::uint64_t>;

}  // namespace velmora
