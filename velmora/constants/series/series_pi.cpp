#include "velmora/constants/series/series_pi.h"

#include <initializer_list>

#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

/// out[0 .. L) := product of the factors.
template <typename wtype>
upL_t set_product(wtype* out, std::initializer_list<std::uint64_t> factors) {
    LeafProduct<wtype> product(out);
    for (const std::uint64_t factor : factors) product.multiply(factor);
    return product.length();
}

/// ln of the product of C k^3 over [a, b).
DoubleDouble cubic_block_size(DoubleDouble rate, upL_t a, upL_t b) {
    return DoubleDouble::from_count(b - a) * rate + DoubleDouble(3) * log_gamma_difference(a, b, 0);
}

}  // namespace

template <typename wtype>
SeriesPiChudnovsky<wtype>::SeriesPiChudnovsky()
    : lumo::SeriesCommonP2B3<wtype>({DoubleDouble::parse("36.93111616078457130182132488791258602081"),
                                     DoubleDouble::parse("32.65445004176851599077913804969300490729")},
                                    31, 8) {}

template <typename wtype>
DoubleDouble SeriesPiChudnovsky<wtype>::block_size(upL_t a, upL_t b) const {
    return cubic_block_size(this->rates.size, a, b);
}

template <typename wtype>
void SeriesPiChudnovsky<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    out.RL = set_product(out.R, {2 * k - 1, 6 * k - 5, 6 * k - 1});
    out.PL = set_product(out.P, {2 * k - 1, 6 * k - 5, 6 * k - 1, 545140134 * k + 13591409});
    out.QL = set_product(out.Q, {k, k, k, 10939058860032000});
    out.R_positive = false;
    out.P_positive = false;
}

template <typename wtype>
SeriesPiRamanujan<wtype>::SeriesPiRamanujan()
    : lumo::SeriesCommonP2B3<wtype>({DoubleDouble::parse("21.84621530333808625449589681453160567684"),
                                     DoubleDouble::parse("18.38047627747241588639166145022043732094")},
                                    31, 12) {}

template <typename wtype>
DoubleDouble SeriesPiRamanujan<wtype>::block_size(upL_t a, upL_t b) const {
    return cubic_block_size(this->rates.size, a, b);
}

template <typename wtype>
void SeriesPiRamanujan<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    out.RL = set_product(out.R, {2 * k - 1, 4 * k - 3, 4 * k - 1});
    out.PL = set_product(out.P, {2 * k - 1, 4 * k - 3, 4 * k - 1, 26390 * k + 1103});
    out.QL = set_product(out.Q, {k, k, k, 3073907232});
    out.R_positive = true;
    out.P_positive = true;
}

template class SeriesPiChudnovsky<std::uint32_t>;
template class SeriesPiChudnovsky<std::uint64_t>;
template class SeriesPiRamanujan<std::uint32_t>;
template class SeriesPiRamanujan<std::uint64_t>;

}  // namespace velmora
