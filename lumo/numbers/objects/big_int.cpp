#include "lumo/numbers/objects/big_int.h"

#include <algorithm>
#include <bit>

#include "lumo/multiply/basecase/basecase.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/basic_int.h"
#include "lumo/numbers/objects/big_float.h"
#include "lumo/numbers/objects/range_sum.h"

namespace lumo {

template <typename wtype>
upL_t BigInt<wtype>::bit_length() const {
    if (L == 0) return 0;
    return L * WordTraits<wtype>::bits - static_cast<upL_t>(std::countl_zero(T[L - 1]));
}

template <typename wtype>
void BigInt<wtype>::clear() {
    T = base;
    L = 0;
    positive = true;
}

template <typename wtype>
void BigInt<wtype>::check_normalization() const {
    require(L == 0 || T[L - 1] != 0, "BigInt::check_normalization(): Top word is zero.");
}

template <typename wtype>
void BigInt<wtype>::set_word(wtype x) {
    clear();
    if (x == 0) return;
    require_capacity("BigInt::set_word()", capacity, 1);
    T[L++] = x;
}

template <typename wtype>
void BigInt<wtype>::set_BasicInt(const BasicInt<wtype>& A) {
    require_capacity("BigInt::set_BasicInt()", capacity, A.L);
    clear();
    bp_copy(T, A.T, A.L);
    L = A.L;
}

template <typename wtype>
void BigInt<wtype>::set_BigInt(const BigInt& A, const ParallelContext& ctx) {
    require_capacity("BigInt::set_BigInt()", capacity, A.L);
    T = base;
    if (T != A.T) bp_copy(T, A.T, A.L, ctx);
    L = A.L;
    positive = A.positive;
}

template <typename wtype>
void BigInt<wtype>::set_BigFloat(const BigFloat<wtype>& A, const ParallelContext& ctx) {
    if (A.L == 0 || A.top() < 1) return clear();
    const auto length = static_cast<upL_t>(A.top());
    require_capacity("BigInt::set_BigFloat()", capacity, length);
    T = base;
    A.read_window(T, 0, length, ctx);
    L = length;
    positive = A.positive;
}

template <typename wtype>
int BigInt<wtype>::ucmp(const BigInt& A, const BigInt& B) {
    if (A.L != B.L) return A.L < B.L ? -1 : 1;
    return bp_compare(A.T, B.T, A.L);
}

template <typename wtype>
int BigInt<wtype>::cmp(const BigInt& A, const BigInt& B) {
    if (A.sign() != B.sign()) return A.sign() < B.sign() ? -1 : 1;
    return A.sign() * ucmp(A, B);
}

/// |A| + |B|, A the longer one.
template <typename wtype>
void BigInt<wtype>::uadd(const BigInt& A, const BigInt& B, const ParallelContext& ctx) {
    const upL_t length = A.L;
    require_capacity("BigInt::set_add()", capacity, length + 1);
    T = base;
    const wtype carry = add_shorter(T, A.T, length, B.T, B.L, ctx);
    L = length;
    if (carry != 0) T[L++] = 1;
}

/// |A| - |B|.
template <typename wtype>
void BigInt<wtype>::usub(const BigInt& A, const BigInt& B, const ParallelContext& ctx) {
    constexpr const char* location = "BigInt::set_sub()";
    const upL_t length = A.L;
    require_capacity(location, capacity, length);
    T = base;
    require(sub_shorter(T, A.T, length, B.T, B.L, ctx) == 0, "Negative result.", location);
    L = bp_strip<wtype>(0, T, length, ctx);
}

template <typename wtype>
void BigInt<wtype>::set_signed_sum(const BigInt& A, const BigInt& B, bool B_positive,
                                   const ParallelContext& ctx) {
    const bool A_positive = A.positive;
    if (A_positive == B_positive || A.L == 0 || B.L == 0) {
        const bool sum_positive = A.L == 0 ? B_positive : A_positive;
        uadd(A.L >= B.L ? A : B, A.L >= B.L ? B : A, ctx);
        positive = L == 0 || sum_positive;
    } else {
        const bool A_larger = ucmp(A, B) >= 0;
        usub(A_larger ? A : B, A_larger ? B : A, ctx);
        positive = L == 0 || A_positive == A_larger;
    }
}

template <typename wtype>
void BigInt<wtype>::set_add(const BigInt& A, const BigInt& B, const ParallelContext& ctx) {
    set_signed_sum(A, B, B.positive, ctx);
}

template <typename wtype>
void BigInt<wtype>::set_sub(const BigInt& A, const BigInt& B, const ParallelContext& ctx) {
    set_signed_sum(A, B, !B.positive, ctx);
}

template <typename wtype>
void BigInt<wtype>::add_ip(wtype x, upL_t position) {
    require(position <= L && L != 0, "BigInt::add_ip(): Magnitude is out of range.");
    require_capacity("BigInt::add_ip()", capacity, L + 1);
    T[L] = 0;  // stops the ripple
    T[position] = static_cast<wtype>(T[position] + x);
    if (T[position] < x)
        while (++T[++position] == 0) continue;
    L += T[L] != 0;
}

template <typename wtype>
BigInt<wtype>& BigInt<wtype>::operator<<=(upL_t bits) {
    if (L == 0 || bits == 0) return *this;
    const upL_t words = bits >> WordTraits<wtype>::bits_k;
    require_capacity("BigInt::operator<<=()", capacity, L + words + 1);
    bp_move(T + words, T, L);
    bp_zero(T, words);
    const wtype high =
        bp_shift_left(T + words, T + words, L, static_cast<unsigned>(bits & (WordTraits<wtype>::bits - 1)));
    L += words;
    if (high != 0) T[L++] = high;
    return *this;
}

template <typename wtype>
BigInt<wtype>& BigInt<wtype>::operator>>=(upL_t bits) {
    const upL_t words = bits >> WordTraits<wtype>::bits_k;
    if (words >= L) {
        clear();
        return *this;
    }
    L -= words;
    bp_move(T, T + words, L);
    bp_shift_right(T, T, L, static_cast<unsigned>(bits & (WordTraits<wtype>::bits - 1)));
    L -= T[L - 1] == 0;
    if (L == 0) clear();
    return *this;
}

template <typename wtype>
void BigInt<wtype>::mul_uW(wtype m, const ParallelContext& ctx) {
    if (m == 0) clear();
    if (m <= 1 || L == 0) return;
    require_capacity("BigInt::mul_uW()", capacity, L + 1);
    const wtype high = bp_mul_uW(T, T, L, m, wtype(0), ctx);
    if (high != 0) T[L++] = high;
}

template <typename wtype>
void BigInt<wtype>::set_mul_uW(const BigInt& A, wtype m, const ParallelContext& ctx) {
    if (m == 0 || A.L == 0) return clear();
    require_capacity("BigInt::set_mul_uW()", capacity, A.L + 1);
    T = base;
    L = A.L;
    positive = A.positive;
    const wtype high = bp_mul_uW(T, A.T, L, m, wtype(0), ctx);
    if (high != 0) T[L++] = high;
}

template <typename wtype>
void BigInt<wtype>::set_sqr(const MultiplyContext& ctx, const BigInt& A) {
    if (A.L == 0) return clear();
    const upL_t length = 2 * A.L;
    require_capacity("BigInt::set_sqr()", capacity, length);
    T = base;
    if (length <= 19)
        Basecase::sqrB(T, A.T, A.L);
    else
        Multiply::sqr(ctx, T, A.T, A.L);
    L = length - (T[length - 1] == 0);
    positive = true;
}

template <typename wtype>
void BigInt<wtype>::set_mul(const MultiplyContext& ctx, const BigInt& A, const BigInt& B) {
    if (A.L == 0 || B.L == 0) return clear();
    const BigInt &a = A.L >= B.L ? A : B, &b = A.L >= B.L ? B : A;
    const upL_t length = a.L + b.L;
    require_capacity("BigInt::set_mul()", capacity, length);
    T = base;
    if (b.L < 10)
        Basecase::mulB(T, a.T, a.L, b.T, b.L);
    else
        Multiply::mul(ctx, T, a.T, a.L, b.T, b.L);
    L = length - (T[length - 1] == 0);
    positive = a.positive == b.positive;
}

template struct BigInt<std::uint32_t>;
template struct BigInt<std::uint64_t>;

}  // namespace lumo
