#include "lumo/multiply/basecase/basecase.h"

#include "lumo/multiply/basecase/accumulator.h"
#include "lumo/multiply/basecase/fixed_products.h"
#include "lumo/multiply/kernels/mul52_kernel.h"

namespace lumo::Basecase {

namespace {

/// One column: the sum of A[i + j] B[-j] over `count` values of j.
template <typename wtype>
void add_column(LoopSum& sum, const wtype* A, const wtype* B, upL_t count) {
    constexpr upL_t D = WORDS_PER_DIGIT<wtype>;
    LoopSum second;  // two chains of carries run side by side
    if (count & 1) {
        sum.add_product(load_u64(A), load_u64(B));
        A += D, B -= D;
    }
    if (count & 2) {
        sum.add_product(load_u64(A), load_u64(B));
        second.add_product(load_u64(A + D), load_u64(B - D));
        A += 2 * D, B -= 2 * D;
    }
    for (count >>= 2; count != 0; count--, A += 4 * D, B -= 4 * D) {
        sum.add_product(load_u64(A), load_u64(B));
        second.add_product(load_u64(A + D), load_u64(B - D));
        sum.add_product(load_u64(A + 2 * D), load_u64(B - 2 * D));
        second.add_product(load_u64(A + 3 * D), load_u64(B - 3 * D));
    }
    sum.add(second);
}

/// The vector kernel for operands of n >= m digits, null where words are faster or nothing else is there.
kernels::Mul52* mul_kernel(upL_t n, upL_t m) {
    constexpr upL_t LEAST_SHORT = 3, LEAST_PRODUCTS = 80;
    return m >= LEAST_SHORT && n * m >= LEAST_PRODUCTS && n <= kernels::MUL52_MOST_DIGITS ? mul52_kernel()
                                                                                          : nullptr;
}
kernels::Mul52* sqr_kernel(upL_t n) {
    constexpr upL_t LEAST = 21;
    return n >= LEAST ? mul_kernel(n, n) : nullptr;
}

/// Operands of n >= m digits.
template <typename wtype>
void mul_digits(wtype* T, const wtype* A, upL_t n, const wtype* B, upL_t m) {
    if (auto* kernel = mul_kernel(n, m)) return kernel(T, A, n, B, m);
    if (n == m && n <= MAX_FIXED_MUL) return fixed_mul(n)(T, A, B);
    if (n >= m && m - 1 < MAX_FIXED_MUL) return fixed_strip(m)(T, B, A, n);
    constexpr upL_t D = WORDS_PER_DIGIT<wtype>;
    LoopSum sum;
    for (upL_t k = 0; k + 1 < n + m; k++) {
        const upL_t first = k < m ? 0 : k - m + 1;
        const upL_t end = std::min(k + 1, n);
        add_column(sum, A + first * D, B + (k - first) * D, end - first);
        set_digit(T, k, sum.shift());
    }
    set_digit(T, n + m - 1, static_cast<std::uint64_t>(sum.low));
}

template <typename wtype>
void sqr_digits(wtype* T, const wtype* A, upL_t n) {
    if (auto* kernel = sqr_kernel(n)) return kernel(T, A, n, A, n);
    if (n <= MAX_FIXED_SQR) return fixed_sqr(n)(T, A);
    constexpr upL_t D = WORDS_PER_DIGIT<wtype>;
    LoopSum sum;
    for (upL_t k = 0; k + 1 < 2 * n; k++) {
        const upL_t first = k < n ? 0 : k - n + 1;
        const upL_t middle = (k + 1) / 2;
        LoopSum cross;
        add_column(cross, A + first * D, A + (k - first) * D, middle - first);
        sum.add(cross);
        sum.add(cross);
        if (k % 2 == 0) sum.add_product(digit(A, middle), digit(A, middle));
        set_digit(T, k, sum.shift());
    }
    set_digit(T, 2 * n - 1, static_cast<std::uint64_t>(sum.low));
}

/// T[0 .. L) += A m; returns the carry word. For the odd word of 32-bit operands.
std::uint32_t add_row(std::uint32_t* T, const std::uint32_t* A, upL_t L, std::uint32_t m) {
    std::uint64_t carry = 0;
    upL_t i = 0;
    for (; i + 2 <= L; i += 2) {
        const unsigned __int128 p =
            static_cast<unsigned __int128>(load_u64(A + i)) * m + load_u64(T + i) + carry;
        store_u64(T + i, static_cast<std::uint64_t>(p));
        carry = static_cast<std::uint64_t>(p >> 64);
    }
    if (i < L) {
        const std::uint64_t p = static_cast<std::uint64_t>(A[i]) * m + T[i] + carry;
        T[i] = static_cast<std::uint32_t>(p);
        carry = p >> 32;
    }
    return static_cast<std::uint32_t>(carry);
}

}  // namespace

template <typename wtype>
upL_t direct_words() {
    constexpr upL_t BY_WORDS = 19;
    return mul52_kernel() ? MOST_DIRECT_BITS / WordTraits<wtype>::bits : BY_WORDS;
}

template <typename wtype>
bool by_vectors(upL_t AL, upL_t BL) {
    constexpr upL_t D = WORDS_PER_DIGIT<wtype>;
    return mul_kernel(AL / D, BL / D) != nullptr;
}

template <typename wtype>
void mulB(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL) {
    if (AL < BL) {
        std::swap(A, B);
        std::swap(AL, BL);
    }
    if (BL == 1) {
        T[AL] = bp_mul_uW(T, A, AL, B[0], wtype(0));
        return;
    }
    if constexpr (sizeof(wtype) == 8) {
        mul_digits(T, A, AL, B, BL);
    } else {
        const upL_t AE = AL & ~upL_t(1), BE = BL & ~upL_t(1);
        mul_digits(T, A, AE / 2, B, BE / 2);
        if (AE != AL) T[AE + BE] = add_row(T + AE, B, BE, A[AE]);
        if (BE != BL) T[AL + BE] = add_row(T + BE, A, AL, B[BE]);
    }
}

template <typename wtype>
void sqrB(wtype* T, const wtype* A, upL_t L) {
    if (L == 1) {
        T[1] = bp_mul_uW(T, A, 1, A[0], wtype(0));
        return;
    }
    if constexpr (sizeof(wtype) == 8) {
        sqr_digits(T, A, L);
    } else {
        const upL_t even = L & ~upL_t(1);
        sqr_digits(T, A, even / 2);
        if (even != L) {
            T[2 * even] = add_row(T + even, A, even, A[even]);
            T[2 * even + 1] = add_row(T + even, A, L, A[even]);
        }
    }
}

template upL_t direct_words<std::uint32_t>();
template upL_t direct_words<std::uint64_t>();
template bool by_vectors<std::uint32_t>(upL_t, upL_t);
template bool by_vectors<std::uint64_t>(upL_t, upL_t);
template void mulB(std::uint32_t*, const std::uint32_t*, upL_t, const std::uint32_t*, upL_t);
template void mulB(std::uint64_t*, const std::uint64_t*, upL_t, const std::uint64_t*, upL_t);
template void sqrB(std::uint32_t*, const std::uint32_t*, upL_t);
template void sqrB(std::uint64_t*, const std::uint64_t*, upL_t);

}  // namespace lumo::Basecase
