#include <algorithm>

#include "lumo/numbers/objects/big_float.h"
#include "lumo/numbers/objects/range_sum.h"

namespace lumo {

namespace {

template <typename wtype>
PlacedWords<wtype> placed(const BigFloat<wtype>& A) {
    return {A.T, A.L, A.exp};
}

}  // namespace

template <typename wtype>
int BigFloat<wtype>::ucmp(const BigFloat& A, const BigFloat& B) {
    if (A.L == 0 || B.L == 0) return static_cast<int>(A.L != 0) - static_cast<int>(B.L != 0);
    if (A.top() != B.top()) return A.top() < B.top() ? -1 : 1;
    const upL_t common = std::min(A.L, B.L);
    const int order = bp_compare(A.T + (A.L - common), B.T + (B.L - common), common);
    if (order != 0) return order;
    if (bp_strip<wtype>(0, A.T, A.L - common) != 0) return 1;
    return bp_strip<wtype>(0, B.T, B.L - common) != 0 ? -1 : 0;
}

template <typename wtype>
int BigFloat<wtype>::cmp(const BigFloat& A, const BigFloat& B) {
    if (A.sign() != B.sign()) return A.sign() < B.sign() ? -1 : 1;
    return A.sign() * ucmp(A, B);
}

template <typename wtype>
void BigFloat<wtype>::set_uadd(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B) {
    if (A.L == 0 || B.L == 0) {
        set_BigFloat(p, A.L == 0 ? B : A, ctx);
        positive = true;
        return;
    }
    const spL_t high = std::max(A.top(), B.top());
    const spL_t low = std::max(high - static_cast<spL_t>(p) - 1, std::min(A.exp, B.exp));
    const auto length = static_cast<upL_t>(high - low);
    require_capacity("BigFloat::set_uadd()", capacity, length + 1);
    T = base;
    L = length;
    exp = low;
    positive = true;
    const wtype carry = range_add(T, low, length, placed(A), placed(B), ctx);
    if (carry != 0) T[L++] = carry;
}

template <typename wtype>
void BigFloat<wtype>::set_usub(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B) {
    if (B.L == 0) {
        set_BigFloat(p, A, ctx);
        positive = true;
        return;
    }
    const spL_t high = std::max(A.top(), B.top());
    const spL_t low = std::max(high - static_cast<spL_t>(p) - 1, std::min(A.exp, B.exp));
    const auto length = static_cast<upL_t>(high - low);
    require_capacity("BigFloat::set_usub()", capacity, length);
    T = base;
    exp = low;
    positive = true;
    const wtype borrow = range_sub(T, low, length, placed(A), placed(B), ctx);
    require(borrow == 0, "Negative result.", "BigFloat::set_usub()");
    L = bp_strip<wtype>(0, T, length, ctx);
    if (L == 0) clear();
}

template <typename wtype>
void BigFloat<wtype>::set_rsub(upL_t length, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B,
                               spL_t high, bool is_positive) {
    require_capacity("BigFloat::set_rsub()", capacity, length + 1);
    T = base;
    exp = high - static_cast<spL_t>(length) - 1;
    positive = is_positive;
    range_sub(T, exp, length + 1, placed(A), placed(B), ctx);
    L = bp_strip<wtype>(0, T, length + 1, ctx);
    if (L == 0) clear();
}

template <typename wtype>
void BigFloat<wtype>::set_signed_sum(upL_t p, const ParallelContext& ctx, const BigFloat& A,
                                     const BigFloat& B, bool B_positive) {
    if (A.L == 0 || B.L == 0 || A.positive == B_positive) {
        const bool sum_positive = A.L == 0 ? B_positive : A.positive;
        set_uadd(p, ctx, A, B);
        positive = L == 0 || sum_positive;
        return;
    }
    const bool A_positive = A.positive;
    const bool A_larger = ucmp(A, B) >= 0;
    set_usub(p, ctx, A_larger ? A : B, A_larger ? B : A);
    positive = L == 0 || A_positive == A_larger;
}

template <typename wtype>
void BigFloat<wtype>::set_add(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B) {
    set_signed_sum(p, ctx, A, B, B.positive);
}

template <typename wtype>
void BigFloat<wtype>::set_sub(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B) {
    set_signed_sum(p, ctx, A, B, !B.positive);
}

template struct BigFloat<std::uint32_t>;
template struct BigFloat<std::uint64_t>;

}  // namespace lumo
