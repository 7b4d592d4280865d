#include "lumo/numbers/objects/big_float.h"

#include <algorithm>
#include <bit>

#include "lumo/numbers/objects/basic_int.h"
#include "lumo/numbers/objects/big_int.h"
#include "lumo/numbers/objects/exact_float.h"
#include "lumo/numbers/objects/placed_number.h"

namespace lumo {

template <typename wtype>
upL_t BigFloat<wtype>::bit_length() const {
    if (L == 0) return 0;
    return static_cast<upL_t>(top()) * WordTraits<wtype>::bits -
           static_cast<upL_t>(std::countl_zero(T[L - 1]));
}

template <typename wtype>
wtype BigFloat<wtype>::word_at(spL_t position) const {
    return exp <= position && position < top() ? T[position - exp] : wtype(0);
}

template <typename wtype>
void BigFloat<wtype>::clear() {
    T = base;
    L = 0;
    exp = 0;
    positive = true;
}

template <typename wtype>
void BigFloat<wtype>::check_normalization() const {
    require(L == 0 || T[L - 1] != 0, "BigFloat::check_normalization(): Top word is zero.");
}

template <typename wtype>
BigFloat<wtype> BigFloat<wtype>::cut(upL_t words) const {
    BigFloat part = *this;
    if (L > words) {
        part.T += L - words;
        part.exp += static_cast<spL_t>(L - words);
        part.L = words;
    }
    return part;
}

template <typename wtype>
void BigFloat<wtype>::set_word(wtype x) {
    place_words("BigFloat::set_word()", *this, &x, x != 0, 0, true, {});
}

template <typename wtype>
void BigFloat<wtype>::set_BigFloat(upL_t p, const BigFloat& A, const ParallelContext& ctx) {
    const BigFloat a = A.cut(p + 2);
    place_words("BigFloat::set_BigFloat()", *this, a.T, a.L, a.exp, a.positive, ctx);
}

template <typename wtype>
void BigFloat<wtype>::set_ExactFloat(const ExactFloat<wtype>& A, const ParallelContext& ctx) {
    place_words("BigFloat::set_ExactFloat()", *this, A.T, A.L, A.exp, A.positive, ctx);
}

template <typename wtype>
void BigFloat<wtype>::set_BasicInt(const BasicInt<wtype>& A, const ParallelContext& ctx) {
    place_words("BigFloat::set_BasicInt()", *this, A.T, A.L, 0, true, ctx);
}

template <typename wtype>
void BigFloat<wtype>::set_BigInt(const BigInt<wtype>& A, const ParallelContext& ctx) {
    place_words("BigFloat::set_BigInt()", *this, A.T, A.L, 0, A.positive, ctx);
}

template <typename wtype>
void BigFloat<wtype>::truncate(upL_t p) {
    *this = cut(p + 2);
}

template <typename wtype>
void BigFloat<wtype>::truncate_above(spL_t position) {
    if (top() <= position) return;
    L = exp >= position ? 0 : bp_strip<wtype>(0, T, static_cast<upL_t>(position - exp));
    if (L == 0) clear();
}

template <typename wtype>
void BigFloat<wtype>::drop_low(upL_t words) {
    T += words;
    exp += static_cast<spL_t>(words);
    L -= words;
    if (L == 0) clear();
}

template <typename wtype>
void BigFloat<wtype>::strip_lzs() {
    drop_low(low_zero_words(T, L));
}

template <typename wtype>
void BigFloat<wtype>::strip_lzs_aligned() {
    drop_low(low_zero_words(T, L) / WordTraits<wtype>::align_words * WordTraits<wtype>::align_words);
}

/// A value just below zero ends in ones as far as it is known; one of them must stay as its sign.
template <typename wtype>
void BigFloat<wtype>::drop_top_ones() {
    strip_lzs();
    if (L != 0) L = std::max<upL_t>(bp_strip(static_cast<wtype>(-1), T, L), 1);
}

template <typename wtype>
void BigFloat<wtype>::drop_top_zeros() {
    L = bp_strip<wtype>(0, T, L);
    if (L == 0) clear();
}

template <typename wtype>
void BigFloat<wtype>::normalize_ones() {
    drop_top_ones();
    drop_top_zeros();
}

template <typename wtype>
void BigFloat<wtype>::two_complement() {
    // Zero words below the dropped ones belong to the value: without them its negative would be too small.
    drop_top_ones();
    if (L == 0) return;
    bp_not(T, T, L);
    bp_add_scalar<wtype>(1, T, L);
    drop_top_zeros();
}

template <typename wtype>
void BigFloat<wtype>::append_word(const char* location, wtype word) {
    require_capacity(location, capacity, static_cast<upL_t>(T - base) + L + 1);
    T[L++] = word;
}

template <typename wtype>
void BigFloat<wtype>::purturb_up(upL_t k) {
    if (L <= k) return;
    if (bp_add_scalar<wtype>(1, T + k, L - k) == 0) return;
    append_word("BigFloat::purturb_up()", 1);
    // Everything from word k up to the new top is zero now, so the words below k no longer count.
    drop_low(k);
}

template <typename wtype>
void BigFloat<wtype>::add_ip(wtype x, spL_t position) {
    require(exp <= position && position <= top(), "BigFloat::add_ip(): Magnitude is out of range.");
    if (x == 0) return;
    const auto i = static_cast<upL_t>(position - exp);
    if (i == L) {
        append_word("BigFloat::add_ip()", x);
        return;
    }
    T[i] = static_cast<wtype>(T[i] + x);
    if (T[i] >= x) return;
    if (bp_add_scalar<wtype>(1, T + i + 1, L - i - 1) != 0) append_word("BigFloat::add_ip()", 1);
}

template <typename wtype>
void BigFloat<wtype>::read_window(wtype* out, spL_t offset, upL_t count, const ParallelContext& ctx) const {
    const spL_t end = offset + static_cast<spL_t>(count);
    const spL_t from = std::clamp(exp, offset, end);
    const spL_t to = std::clamp(top(), from, end);
    bp_zero(out, static_cast<upL_t>(from - offset), ctx);
    if (from < to) bp_copy(out + (from - offset), T + (from - exp), static_cast<upL_t>(to - from), ctx);
    bp_zero(out + (to - offset), static_cast<upL_t>(end - to), ctx);
}

template struct BigFloat<std::uint32_t>;
template struct BigFloat<std::uint64_t>;

}  // namespace lumo
