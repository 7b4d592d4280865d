#include "lumo/multiply/basecase/karatsuba.h"

#include "lumo/numbers/words/carry_loops.h"

namespace lumo::Basecase {

namespace {

constexpr upL_t levels_scratch(upL_t L, upL_t threshold) {
    upL_t words = 0;
    for (; L >= threshold; L = (L + 1) / 2) words += 2 * ((L + 1) / 2);
    return words;
}

/// T[0 .. L) += A[0 .. AL) with AL <= L, rippling; returns the carry out.
template <typename wtype>
unsigned char add_ripple(wtype* T, upL_t L, const wtype* A, upL_t AL, unsigned char carry = 0) {
    carry = run_carry_loop<CarrySum>(T, T, A, AL, carry);
    for (upL_t i = AL; i < L && carry != 0; i++) carry = ++T[i] == 0;
    return carry;
}

/// T[0 .. h) := |A0 - A1| for A = (A1, A0) with a low part of h and a high part of m words, h - m <= 1.
/// Returns whether A0 < A1.
template <typename wtype>
bool half_difference(wtype* T, const wtype* A, upL_t h, upL_t m) {
    const wtype* high = A + h;
    if (h != m) {
        T[m] = A[m];
        if (A[m] != 0) {
            T[m] -= run_carry_loop<CarryDifference>(T, A, high, m, 0);
            return false;
        }
    }
    const bool negative = bp_compare(A, high, m) < 0;
    run_carry_loop<CarryDifference>(T, negative ? high : A, negative ? A : high, m, 0);
    return negative;
}

/// Joins the three half products of L = h + m words: T holds the low and the high one, D the product of the
/// differences (2h words, overwritten), whose sign goes into the middle.
template <typename wtype>
void join_halves(wtype* T, wtype* D, upL_t L, upL_t h, bool add_difference) {
    const upL_t m = L - h;
    signed char carry;  // of the middle, in [0, 2]
    if (add_difference) {
        carry = static_cast<signed char>(run_carry_loop<CarrySum>(D, D, T, 2 * h, 0));
    } else {
        carry = static_cast<signed char>(-run_carry_loop<CarryDifference>(D, T, D, 2 * h, 0));
    }
    carry = static_cast<signed char>(carry + add_ripple(D, 2 * h, T + 2 * h, 2 * m));
    carry = static_cast<signed char>(carry + run_carry_loop<CarrySum>(T + h, T + h, D, 2 * h, 0));
    wtype above = static_cast<wtype>(carry);
    for (upL_t i = 3 * h; i < 2 * L && above != 0; i++) {
        T[i] = static_cast<wtype>(T[i] + above);
        above = T[i] < above;
    }
}

}  // namespace

template <typename wtype>
upL_t sqr_scratch(upL_t L) {
    return levels_scratch(L, KaratsubaThresholds<wtype>::sqr);
}

template <typename wtype>
upL_t mul_scratch(upL_t AL, upL_t BL) {
    upL_t blocks = 0, most = 0;
    while (true) {
        if (AL < BL) std::swap(AL, BL);
        if (BL < KaratsubaThresholds<wtype>::mul) return std::max(most, blocks);
        if (AL == BL) return std::max(most, blocks + levels_scratch(BL, KaratsubaThresholds<wtype>::mul));
        blocks += 2 * BL;
        most = std::max(most, blocks + levels_scratch(BL, KaratsubaThresholds<wtype>::mul));
        AL %= BL;
        if (AL == 0) return most;
    }
}

template <typename wtype>
void sqrK(wtype* T, const wtype* A, upL_t L, wtype* scratch) {
    if (L < KaratsubaThresholds<wtype>::sqr || by_vectors<wtype>(L, L)) return sqrB(T, A, L);
    const upL_t h = (L + 1) / 2, m = L - h;
    wtype* deeper = scratch + 2 * h;
    half_difference(T, A, h, m);
    sqrK(scratch, T, h, deeper);
    sqrK(T, A, h, deeper);
    sqrK(T + 2 * h, A + h, m, deeper);
    join_halves(T, scratch, L, h, false);
}

template <typename wtype>
void elmK(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype* scratch) {
    if (L < KaratsubaThresholds<wtype>::mul || by_vectors<wtype>(L, L)) return elmB(T, A, B, L);
    const upL_t h = (L + 1) / 2, m = L - h;
    wtype* deeper = scratch + 2 * h;
    // (A0 - A1)(B1 - B0) is what the middle needs beside the two other products.
    const bool negative_a = half_difference(T, A, h, m);
    const bool negative_b = half_difference(T + h, B, h, m);
    elmK(scratch, T, T + h, h, deeper);
    elmK(T, A, B, h, deeper);
    elmK(T + 2 * h, A + h, B + h, m, deeper);
    join_halves(T, scratch, L, h, negative_a != negative_b);
}

template <typename wtype>
void mulK(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL, wtype* scratch) {
    if (AL < BL) {
        std::swap(A, B);
        std::swap(AL, BL);
    }
    if (BL < KaratsubaThresholds<wtype>::mul || by_vectors<wtype>(AL, BL)) return mulB(T, A, AL, B, BL);
    elmK(T, A, B, BL, scratch);
    // Each further block of A meets the product so far in the BL words that the two share.
    wtype* deeper = scratch + 2 * BL;
    for (upL_t done = BL; done < AL;) {
        const upL_t block = std::min(BL, AL - done);
        if (block == BL)
            elmK(scratch, A + done, B, BL, deeper);
        else
            mulK(scratch, B, BL, A + done, block, deeper);
        const unsigned char carry = run_carry_loop<CarrySum>(T + done, T + done, scratch, BL, 0);
        bp_move(T + done + BL, scratch + BL, block);
        if (carry != 0) bp_add_scalar<wtype>(1, T + done + BL, block);
        done += block;
    }
}

template upL_t sqr_scratch<std::uint32_t>(upL_t);
template upL_t sqr_scratch<std::uint64_t>(upL_t);
template upL_t mul_scratch<std::uint32_t>(upL_t, upL_t);
template upL_t mul_scratch<std::uint64_t>(upL_t, upL_t);
template void sqrK(std::uint32_t*, const std::uint32_t*, upL_t, std::uint32_t*);
template void sqrK(std::uint64_t*, const std::uint64_t*, upL_t, std::uint64_t*);
template void elmK(std::uint32_t*, const std::uint32_t*, const std::uint32_t*, upL_t, std::uint32_t*);
template void elmK(std::uint64_t*, const std::uint64_t*, const std::uint64_t*, upL_t, std::uint64_t*);
template void mulK(std::uint32_t*, const std::uint32_t*, upL_t, const std::uint32_t*, upL_t, std::uint32_t*);
template void mulK(std::uint64_t*, const std::uint64_t*, upL_t, const std::uint64_t*, upL_t, std::uint64_t*);

}  // namespace lumo::Basecase
