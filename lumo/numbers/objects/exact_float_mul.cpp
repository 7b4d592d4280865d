#include "lumo/multiply/basecase/basecase.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/exact_float.h"

namespace lumo {

/// Words shifted in place, exponent and hash untouched.
template <typename wtype>
void ExactFloat<wtype>::shift_left(const char* location, unsigned bits) {
    if (bits == 0) return;
    require_capacity(location, room(), L + 1);
    const wtype high = bp_shift_left(T, T, L, bits);
    if (high != 0) T[L++] = high;
}

template <typename wtype>
void ExactFloat<wtype>::mp2_noupdate(spL_t bits) {
    if (L == 0) return;
    shift_left("ExactFloat::mp2_noupdate()", static_cast<unsigned>(bits & (WordTraits<wtype>::bits - 1)));
    exp += bits >> WordTraits<wtype>::bits_k;
}

template <typename wtype>
void ExactFloat<wtype>::mp2(spL_t bits) {
    if (L == 0) return;
    const auto shift = static_cast<unsigned>(bits & (WordTraits<wtype>::bits - 1));
    const spL_t words = bits >> WordTraits<wtype>::bits_k;
    shift_left("ExactFloat::mp2()", shift);
    exp += words;
    hash = Hash61::mul(Hash61::mul(hash, std::uint64_t(1) << shift), Hash61::word_power<wtype>(words));
}

/// T[0 .. L) := words m + c, the hash following; T, L, exp, positive and hash describe the operand.
template <typename wtype>
void ExactFloat<wtype>::muladd_words(const char* location, const wtype* words, wtype m, wtype c,
                                     const ParallelContext& ctx) {
    require_capacity(location, room(), L + 1);
    const wtype high = bp_mul_uW(T, words, L, m, c, ctx);
    if (high != 0) T[L++] = high;
    const std::uint64_t added = Hash61::mul(c, Hash61::word_power<wtype>(exp));
    hash = Hash61::mul(hash, m);
    hash = positive ? Hash61::add(hash, added) : Hash61::sub(hash, added);
}

template <typename wtype>
void ExactFloat<wtype>::muladd_uW(wtype m, wtype c, const ParallelContext& ctx) {
    if (m == 0) return clear();
    muladd_words("ExactFloat::muladd_uW()", T, m, c, ctx);
}

template <typename wtype>
void ExactFloat<wtype>::set_muladd_uW(const ExactFloat& A, wtype m, wtype c, const ParallelContext& ctx) {
    if (m == 0) return clear();
    constexpr const char* location = "ExactFloat::set_muladd_uW()";
    require_capacity(location, capacity, A.L + 1);
    const wtype* words = A.T;
    T = base;
    L = A.L;
    exp = A.exp;
    positive = A.positive;
    hash = A.hash;
    muladd_words(location, words, m, c, ctx);
}

/// Words by which a product from `bottom` up is lengthened downward.
inline upL_t words_below(spL_t bottom, spL_t emin) {
    return bottom > emin ? static_cast<upL_t>(bottom - emin) : 0;
}

/// T := A B, `zeros` words above the start of the buffer, which are zero-filled and belong to the number.
template <typename wtype>
void ExactFloat<wtype>::place_product(const char* location, const MultiplyContext& ctx, const ExactFloat& A,
                                      const ExactFloat& B, upL_t zeros) {
    if (A.L == 0 || B.L == 0) return clear_keeping(Hash61::mul(A.hash, B.hash));
    const ExactFloat &a = A.L >= B.L ? A : B, &b = A.L >= B.L ? B : A;
    const upL_t length = a.L + b.L;
    require_capacity(location, capacity, zeros + length);
    T = base;
    bp_zero(T, zeros, ctx.parallel());
    const bool square = a.T == b.T && a.L == b.L, direct = length <= Basecase::direct_words<wtype>();
    if (!direct && square)
        Multiply::sqr(ctx, T + zeros, a.T, a.L);
    else if (!direct)
        Multiply::mul(ctx, T + zeros, a.T, a.L, b.T, b.L);
    else if (square)
        Basecase::sqrB(T + zeros, a.T, a.L);
    else
        Basecase::mulB(T + zeros, a.T, a.L, b.T, b.L);
    L = zeros + length - (T[zeros + length - 1] == 0);
    exp = a.exp + b.exp - static_cast<spL_t>(zeros);
    positive = a.positive == b.positive;
    hash = Hash61::mul(a.hash, b.hash);
}

template <typename wtype>
void ExactFloat<wtype>::set_sqr(const MultiplyContext& ctx, const ExactFloat& A) {
    place_product("ExactFloat::set_sqr()", ctx, A, A, 0);
}

template <typename wtype>
void ExactFloat<wtype>::set_mul(const MultiplyContext& ctx, const ExactFloat& A, const ExactFloat& B) {
    place_product("ExactFloat::set_mul()", ctx, A, B, 0);
}

template <typename wtype>
void ExactFloat<wtype>::set_mul_extend(const MultiplyContext& ctx, const ExactFloat& A, const ExactFloat& B,
                                       spL_t emin) {
    place_product("ExactFloat::set_mul(extend)", ctx, A, B, words_below(A.exp + B.exp, emin));
}

template <typename wtype>
void ExactFloat<wtype>::set_mul_small(const MultiplyContext& ctx, const ExactFloat& A, const ExactFloat& B,
                                      spL_t emin) {
    if (A.L == 0 || B.L == 0) return clear_keeping(Hash61::mul(A.hash, B.hash));
    const upL_t zeros = words_below(A.exp + B.exp, emin), length = A.L + B.L;
    require_capacity("ExactFloat::set_mul_small()", capacity, zeros + length);
    Multiply::mul_small(ctx, base + zeros, 0, length, A.T, A.L, B.T, B.L);
    // The header may be an operand's: what is read from A and B comes first.
    exp = A.exp + B.exp - static_cast<spL_t>(zeros);
    positive = A.positive == B.positive;
    hash = Hash61::mul(A.hash, B.hash);
    T = base;
    bp_zero(T, zeros, ctx.parallel());
    L = zeros + length - (T[zeros + length - 1] == 0);
}

template struct ExactFloat<std::uint32_t>;
template struct ExactFloat<std::uint64_t>;

}  // namespace lumo
