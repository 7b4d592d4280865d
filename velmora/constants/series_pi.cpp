#include "velmora/constants/series_pi.h"

#include <initializer_list>

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

/// out[0 .. L) := product of the factors, each below 2^64.
template <typename wtype>
upL_t set_product(wtype* out, std::initializer_list<std::uint64_t> factors) {
    constexpr unsigned W = lumo::WordTraits<wtype>::bits;
    out[0] = 1;
    upL_t L = 1;
    for (const std::uint64_t factor : factors) {
        // The factor in one or two words; each a pass of multiply and add.
        wtype source[lumo::LeafTerm<wtype>::MAX_WORDS];
        const upL_t source_length = L;
        for (upL_t i = 0; i < L; ++i) source[i] = out[i];
        for (upL_t i = 0; i < L + 64 / W; ++i) out[i] = 0;
        for (unsigned j = 0; j < 64 / W; ++j) {
            const auto digit = static_cast<wtype>(factor >> (j * W % 64));
            unsigned __int128 carry = 0;
            for (upL_t i = 0; i < source_length; ++i) {
                carry += static_cast<unsigned __int128>(source[i]) * digit + out[i + j];
                out[i + j] = static_cast<wtype>(carry);
                carry >>= W;
            }
            out[source_length + j] = static_cast<wtype>(carry);
        }
        L = source_length + 64 / W;
        while (L != 0 && out[L - 1] == 0) --L;
    }
    return L;
}

/// (b - a) rate + 3 ln((b - 1)! / (a - 1)!): ln of the product of C k^3 over [a, b).
DoubleDouble cubic_block_size(DoubleDouble rate, upL_t a, upL_t b) {
    const long double powers =
        3 * (lumo::log_gamma(static_cast<long double>(b)) - lumo::log_gamma(static_cast<long double>(a)));
    const auto high = static_cast<double>(powers);
    return DoubleDouble::from_count(b - a) * rate +
           DoubleDouble(high, static_cast<double>(powers - static_cast<long double>(high)));
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
