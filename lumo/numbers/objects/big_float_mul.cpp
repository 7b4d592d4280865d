#include <algorithm>

#include "lumo/multiply/basecase/basecase.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/big_float.h"
#include "lumo/numbers/words/shoup_divider.h"

namespace lumo {

namespace {

spL_t add_positions(const char* location, spL_t a, spL_t b) {
    spL_t sum;
    if (__builtin_add_overflow(a, b, &sum)) [[unlikely]]
        throw ExponentOverflowException(location, std::to_string(a) + " + " + std::to_string(b));
    return sum;
}

}  // namespace

template <typename wtype>
void BigFloat<wtype>::mul_uW(wtype m, const ParallelContext& ctx) {
    if (m == 0) clear();
    if (m <= 1 || L == 0) return;
    require_capacity("BigFloat::mul_uW()", capacity, static_cast<upL_t>(T - base) + L + 1);
    const wtype high = bp_mul_uW(T, T, L, m, wtype(0), ctx);
    if (high != 0) T[L++] = high;
}

template <typename wtype>
void BigFloat<wtype>::mp2(spL_t bits) {
    if (L == 0) return;
    exp = add_positions("BigFloat::mp2()", exp, bits >> WordTraits<wtype>::bits_k);
    mul_uW(wtype(1) << (bits & (WordTraits<wtype>::bits - 1)));
}

template <typename wtype>
void BigFloat<wtype>::set_mul_uW(upL_t p, const BigFloat& A, wtype m, const ParallelContext& ctx) {
    if (m == 0 || A.L == 0) return clear();
    const BigFloat a = A.cut(p + 1);
    require_capacity("BigFloat::set_mul_uW()", capacity, a.L + 1);
    T = base;
    L = a.L;
    exp = a.exp;
    positive = a.positive;
    const wtype high = bp_mul_uW(T, a.T, L, m, wtype(0), ctx);
    if (high != 0) T[L++] = high;
}

template <typename wtype>
void BigFloat<wtype>::set_mul_sL(upL_t p, const BigFloat& A, spL_t m, const ParallelContext& ctx) {
    const upL_t magnitude = m < 0 ? upL_t(0) - static_cast<upL_t>(m) : static_cast<upL_t>(m);
    const auto low = static_cast<wtype>(magnitude);
    if (low == magnitude) {
        set_mul_uW(p, A, low, ctx);
    } else {
        if (A.L == 0) return clear();
        const BigFloat a = A.cut(p + 1);
        const wtype factor[2] = {low, static_cast<wtype>(magnitude >> 32)};
        require_capacity("BigFloat::set_mul_uW()", capacity, a.L + 2);
        T = base;
        exp = a.exp;
        positive = a.positive;
        Basecase::mulB(T, a.T, a.L, factor, 2);
        L = a.L + 2 - (T[a.L + 1] == 0);
    }
    if (m < 0 && L != 0) negate();
}

template <typename wtype>
void BigFloat<wtype>::set_div_sW(upL_t p, const ParallelContext& ctx, const BigFloat& A, signed_word m) {
    if (m == 0) throw ArithmeticException("BigFloat::set_div_sW()", "Divide by zero.");
    if (m == 1) return set_BigFloat(p, A, ctx);
    const ShoupDivider<wtype> divider(m < 0 ? wtype(0) - static_cast<wtype>(m) : static_cast<wtype>(m));
    if (A.L == 0) return clear();
    const BigFloat a = A.cut(p + 2);
    // A sum's location, kept as it is known to readers of reports.
    require_capacity("BigFloat::set_uadd()", capacity, p + 2);
    T = base;
    exp = a.top() - static_cast<spL_t>(p + 2);
    positive = a.positive == (m > 0);
    require(a.L <= p + 2, "TL < AL", "bp_div_np(TL, AL)");
    const upL_t extra = p + 2 - a.L;
    const wtype rest = bp_div_np(divider, T + extra, a.T, a.L, wtype(0), ctx);
    bp_div_ex(divider, T, extra, rest, ctx);
    L = p + 2 - (T[p + 1] == 0);
}

/// Where a product cut to p + 2 words goes: its operands cut, the low words not wanted, the words kept.
template <typename wtype>
struct BigFloat<wtype>::ProductCut {
    BigFloat A, B;
    upL_t kept;
    upL_t skipped;
    ProductCut(upL_t p, const BigFloat& A_, const BigFloat& B_)
        : A(A_.cut(p + 2)), B(B_.cut(p + 2)), kept(std::min(p + 2, A.L + B.L)), skipped(A.L + B.L - kept) {}
};

template <typename wtype>
void BigFloat<wtype>::accept_product(const char* location, const ProductCut& product) {
    add_positions(location, product.A.top(), product.B.top());
    exp = add_positions(location, product.A.exp, product.B.exp) + static_cast<spL_t>(product.skipped);
    positive = product.A.positive == product.B.positive;
    L = product.kept - (T[product.kept - 1] == 0);
}

template <typename wtype>
void BigFloat<wtype>::set_sqr(upL_t p, const MultiplyContext& ctx, const BigFloat& A) {
    if (A.L == 0) return clear();
    const ProductCut product(p, A, A);
    const BigFloat& a = product.A;
    require_capacity("BigFloat::set_sqr()", capacity, product.kept);
    T = base;
    if (product.skipped == 0 && 2 * a.L < 20)
        Basecase::sqrB(T, a.T, a.L);
    else
        Multiply::sqr_partial(ctx, T, product.skipped, 2 * a.L, a.T, a.L);
    accept_product("BigFloat::set_sqr()", product);
}

template <typename wtype>
void BigFloat<wtype>::set_mul(upL_t p, const MultiplyContext& ctx, const BigFloat& A, const BigFloat& B) {
    if (A.L == 0 || B.L == 0) return clear();
    const bool swapped = A.L < B.L;
    const ProductCut product(p, swapped ? B : A, swapped ? A : B);
    const BigFloat &a = product.A, &b = product.B;
    require_capacity("BigFloat::set_mul()", capacity, product.kept);
    T = base;
    if (product.skipped == 0 && b.L <= 9)
        Basecase::mulB(T, a.T, a.L, b.T, b.L);
    else
        Multiply::mul_partial(ctx, T, product.skipped, a.L + b.L, a.T, a.L, b.T, b.L);
    accept_product("BigFloat::set_mul()", product);
}

template <typename wtype>
void BigFloat<wtype>::set_mul_small(upL_t p, const MultiplyContext& ctx, const BigFloat& A,
                                    const BigFloat& B) {
    if (A.L == 0 || B.L == 0) return clear();
    const ProductCut product(p, A, B);
    const BigFloat &a = product.A, &b = product.B;
    require_capacity("BigFloat::set_mul_small()", capacity, product.kept);
    T = base;
    Multiply::mul_small(ctx, T, product.skipped, a.L + b.L, a.T, a.L, b.T, b.L);
    accept_product("BigFloat::set_mul_small()", product);
}

template struct BigFloat<std::uint32_t>;
template struct BigFloat<std::uint64_t>;

}  // namespace lumo
