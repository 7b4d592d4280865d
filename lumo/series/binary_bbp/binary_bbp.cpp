#include "lumo/series/binary_bbp/binary_bbp.h"

#include <algorithm>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/series/leaf_numbers.h"

namespace lumo {
namespace {

template <typename wtype>
DoubleDouble size_of_power(const GeometricRatio<wtype>& ratio) {
    return DoubleDouble(ratio.power) * log(DoubleDouble::from_count(ratio.root));
}

template <typename wtype>
upL_t shift_left(wtype* T, upL_t L, unsigned bits) {
    constexpr unsigned W = WordTraits<wtype>::bits;
    for (; bits >= W - 1; bits -= W - 1) L = multiply_add(T, L, std::uint64_t(1) << (W - 1), 0);
    return multiply_add(T, L, std::uint64_t(1) << bits, 0);
}

}  // namespace

template <typename wtype>
BinaryBBP<wtype>::BinaryBBP(const GeometricRatio<wtype>& ratio_, DoubleDouble size, upL_t overhead,
                            upL_t leaf)
    : SeriesCommonP2B3<wtype>({size, size_of_power(ratio_) + DoubleDouble(ratio_.shift) * LN2_PAIR}, overhead,
                              leaf),
      ratio(ratio_),
      power_size(size_of_power(ratio_)) {}

template <typename wtype>
void BinaryBBP<wtype>::term(LeafTerm<wtype>& out, upL_t k) const {
    fraction(out, k);
    out.R_positive = true;
    out.QL = out.RL;
    std::copy_n(out.R, out.RL, out.Q);
    for (unsigned i = 0; i < ratio.power; ++i) out.QL = multiply_add(out.Q, out.QL, ratio.root, 0);
    out.QL = shift_left(out.Q, out.QL, ratio.shift);
}

template <typename wtype>
void BinaryBBP<wtype>::end(upL_t a, upL_t b, Parts<wtype>& out) const {
    require(b - a == 1, "A leaf of several terms needs a series that makes it.", "BinaryBBP::BSR_E()");
    LeafTerm<wtype> one;
    fraction(one, a);
    set_words(out.P, one.P, one.PL, one.P_positive);
    set_words(out.R, one.R, one.RL, true);
}

template <typename wtype>
upL_t BinaryBBP<wtype>::denominator_words(upL_t a, upL_t b) const {
    const DoubleDouble size = this->block_size(a, b) - DoubleDouble::from_count(b - a) * this->rates.converge;
    return size_to_words<wtype>(DoubleDouble(0) > size ? DoubleDouble(0) : size) + 1 +
           this->excess_bits / WordTraits<wtype>::bits;
}

template <typename wtype>
upL_t BinaryBBP<wtype>::power_words(upL_t n) const {
    return size_to_words<wtype>(DoubleDouble::from_count(n) * power_size) + 1;
}

template class BinaryBBP<std::uint32_t>;
template class BinaryBBP<std::uint64_t>;

}  // namespace lumo
