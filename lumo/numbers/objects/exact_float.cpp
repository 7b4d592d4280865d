#include "lumo/numbers/objects/exact_float.h"

#include "lumo/numbers/objects/basic_int.h"
#include "lumo/numbers/objects/placed_number.h"

namespace lumo {

template <typename wtype>
wtype ExactFloat<wtype>::word_at(spL_t position) const {
    return exp <= position && position < top() ? T[position - exp] : wtype(0);
}

template <typename wtype>
void ExactFloat<wtype>::clear() {
    T = base;
    L = 0;
    exp = 0;
    positive = true;
    hash = 0;
}

template <typename wtype>
void ExactFloat<wtype>::clear_keeping(std::uint64_t evidence) {
    clear();
    hash = evidence;
}

template <typename wtype>
void ExactFloat<wtype>::set_BasicInt(const BasicInt<wtype>& A, bool is_positive) {
    place_words("ExactFloat::set_BasicInt()", *this, A.T, A.L, 0, is_positive, {});
    hash = is_positive ? A.hash : Hash61::negate(A.hash);
}

template <typename wtype>
void ExactFloat<wtype>::set_ExactFloat(const ExactFloat& A, const ParallelContext& ctx) {
    const std::uint64_t A_hash = A.hash;
    place_words("ExactFloat::set_ExactFloat()", *this, A.T, A.L, A.exp, A.positive, ctx);
    hash = A_hash;
}

template <typename wtype>
void ExactFloat<wtype>::drop_low(upL_t words) {
    T += words;
    exp += static_cast<spL_t>(words);
    L -= words;
    if (L != 0) return;
    T = base;
    exp = 0;
    positive = true;
}

template <typename wtype>
void ExactFloat<wtype>::strip_lzs() {
    drop_low(low_zero_words(T, L));
}

template <typename wtype>
void ExactFloat<wtype>::strip_lzs_aligned() {
    drop_low(low_zero_words(T, L) / WordTraits<wtype>::align_words * WordTraits<wtype>::align_words);
}

template <typename wtype>
void ExactFloat<wtype>::negate() {
    positive = L == 0 || !positive;
    hash = Hash61::negate(hash);
}

template <typename wtype>
std::uint64_t ExactFloat<wtype>::computed_hash(const ParallelContext& ctx) const {
    const std::uint64_t magnitude = Hash61::mul(bp_hash(0, T, L, ctx), Hash61::word_power<wtype>(exp));
    return Hash61::canonical(positive ? magnitude : Hash61::negate(magnitude));
}

template struct ExactFloat<std::uint32_t>;
template struct ExactFloat<std::uint64_t>;

}  // namespace lumo
