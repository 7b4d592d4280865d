#include "velmora/constants/series/series_huvent.h"

#include "lumo/numbers/words/words.h"
#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

struct SquareFactor {
    std::uint64_t a;
    std::uint64_t b;
    std::int64_t coefficient;
};
constexpr SquareFactor FACTORS[] = {
    {12, 1, 1152}, {6, 1, -288}, {4, 1, -128}, {12, 5, -288}, {2, 1, -16},
    {12, 7, -144}, {4, 3, -16},  {6, 5, -18},  {12, 11, 36},
};

/// T[0 .. returned length) := coefficient x (product of all f but FACTORS[left_out])^2.
template <typename wtype>
upL_t set_square(wtype* T, upL_t j, std::size_t left_out, std::uint64_t coefficient) {
    wtype root[lumo::LeafTerm<wtype>::MAX_WORDS];
    wtype scaled[lumo::LeafTerm<wtype>::MAX_WORDS];
    LeafProduct<wtype> product(root);
    for (std::size_t i = 0; i < std::size(FACTORS); ++i) {
        if (i != left_out) product.multiply(FACTORS[i].a * j + FACTORS[i].b);
    }
    const upL_t L = product.length();
    upL_t scaled_length = L;
    scaled[L] = lumo::bp_mul_uW(scaled, root, L, static_cast<wtype>(coefficient), wtype(0));
    if (scaled[L] != 0) ++scaled_length;
    return lumo::add_words_product(T, 0, scaled, scaled_length, root, L);
}

/// T := T + A over MAX_WORDS words.
template <typename wtype>
void add(wtype* T, const wtype* A, upL_t L) {
    const wtype carry = lumo::bp_add(T, T, A, L, wtype(0));
    lumo::bp_add_scalar<wtype>(carry, T + L, lumo::LeafTerm<wtype>::MAX_WORDS - L);
}

}  // namespace

template <typename wtype>
SeriesCatalanHuvent<wtype>::SeriesCatalanHuvent()
    : lumo::SeriesCommonP2B3<wtype>({DoubleDouble::parse("38.13664596417534743576329921556466490649"),
                                     DoubleDouble::parse("4.158883083359671856503392728749059408453")},
                                    72, 2) {}

template <typename wtype>
DoubleDouble SeriesCatalanHuvent<wtype>::block_size(upL_t a, upL_t b) const {
    DoubleDouble size = DoubleDouble::from_count(b - a) * this->rates.size;
    for (const SquareFactor& f : FACTORS) {
        const long double shift = static_cast<long double>(f.b) / static_cast<long double>(f.a) - 1;
        size = size + DoubleDouble(2) * log_gamma_difference(a, b, shift);
    }
    return size;
}

template <typename wtype>
void SeriesCatalanHuvent<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    constexpr upL_t WORDS = lumo::LeafTerm<wtype>::MAX_WORDS;
    const upL_t j = k - 1;
    const std::size_t none = std::size(FACTORS);
    out.RL = set_square(out.R, j, none, 1);
    out.R_positive = false;
    out.QL = set_square(out.Q, j, none, 64);

    wtype positive[WORDS] = {};
    wtype negative[WORDS] = {};
    for (std::size_t i = 0; i < std::size(FACTORS); ++i) {
        const std::int64_t c = FACTORS[i].coefficient;
        wtype square[WORDS];
        const upL_t L = set_square(square, j, i, static_cast<std::uint64_t>(c < 0 ? -c : c));
        add(c < 0 ? negative : positive, square, L);
    }
    out.P_positive = lumo::bp_compare(positive, negative, WORDS) >= 0;
    lumo::bp_sub(out.P, out.P_positive ? positive : negative, out.P_positive ? negative : positive, WORDS,
                 wtype(0));
    out.PL = lumo::bp_strip<wtype>(0, out.P, WORDS);
}

template class SeriesCatalanHuvent<std::uint32_t>;
template class SeriesCatalanHuvent<std::uint64_t>;

}  // namespace velmora
