/// Numbers of a leaf as it is made by words: little-endian arrays, their length without leading zero words,
/// zero of length 0.
#pragma once

#include "lumo/foundation/errors/fatal.h"
#include "lumo/numbers/objects/basic_int.h"
#include "lumo/numbers/objects/exact_float.h"

namespace lumo {

/// T := T m + c for a magnitude of L words; returns the new length. m is at most 2^63, and the value must not
/// become negative.
template <typename wtype>
upL_t multiply_add(wtype* T, upL_t L, std::uint64_t m, std::int64_t c) {
    __int128 carry = c;
    for (upL_t i = 0; i < L; ++i) {
        carry += static_cast<__int128>(static_cast<unsigned __int128>(T[i]) * m);
        T[i] = static_cast<wtype>(carry);
        carry >>= WordTraits<wtype>::bits;
    }
    for (; carry != 0; carry >>= WordTraits<wtype>::bits) T[L++] = static_cast<wtype>(carry);
    return L;
}

/// T := T + A m; returns the new length. T overlaps A nowhere.
template <typename wtype>
upL_t add_product(wtype* T, upL_t L, const wtype* A, upL_t AL, std::uint64_t m) {
    for (; L < AL; ++L) T[L] = 0;
    unsigned __int128 carry = 0;
    upL_t i = 0;
    for (; i < AL; ++i) {
        // (2^64 - 1)^2 and two words more still fit.
        carry += static_cast<unsigned __int128>(A[i]) * m + T[i];
        T[i] = static_cast<wtype>(carry);
        carry >>= WordTraits<wtype>::bits;
    }
    for (; carry != 0; ++i, carry >>= WordTraits<wtype>::bits) {
        if (i == L) T[L++] = 0;
        carry += T[i];
        T[i] = static_cast<wtype>(carry);
    }
    return L;
}

/// T := T - A m, fatal if that is negative; returns the new length. T overlaps A nowhere.
template <typename wtype>
upL_t subtract_product(wtype* T, upL_t L, const wtype* A, upL_t AL, std::uint64_t m) {
    require(AL <= L, "A difference is negative.", "subtract_product()");
    unsigned __int128 borrow = 0;
    for (upL_t i = 0; i < AL; ++i) {
        const unsigned __int128 part = static_cast<unsigned __int128>(A[i]) * m + borrow;
        const auto low = static_cast<wtype>(part);
        borrow = (part >> WordTraits<wtype>::bits) + (T[i] < low);
        T[i] = static_cast<wtype>(T[i] - low);
    }
    for (upL_t i = AL; borrow != 0; ++i) {
        require(i < L, "A difference is negative.", "subtract_product()");
        const auto low = static_cast<wtype>(borrow);
        borrow = (borrow >> WordTraits<wtype>::bits) + (T[i] < low);
        T[i] = static_cast<wtype>(T[i] - low);
    }
    while (L != 0 && T[L - 1] == 0) --L;
    return L;
}

/// T := T + A B; returns the new length. T overlaps neither.
template <typename wtype>
upL_t add_words_product(wtype* T, upL_t L, const wtype* A, upL_t AL, const wtype* B, upL_t BL) {
    if (AL == 0) return L;
    for (upL_t j = 0; j < BL; ++j) {
        for (; L < j; ++L) T[L] = 0;
        L = j + add_product(T + j, L - j, A, AL, B[j]);
    }
    return L;
}

/// T := T - A B, fatal if that is negative; returns the new length. T overlaps neither.
template <typename wtype>
upL_t subtract_words_product(wtype* T, upL_t L, const wtype* A, upL_t AL, const wtype* B, upL_t BL) {
    for (upL_t j = 0; j < BL; ++j) L = j + subtract_product(T + j, L - j, A, AL, B[j]);
    return L;
}

/// out := the number, with its hash. BufferTooSmallException as of ExactFloat::set_BasicInt().
template <typename wtype>
void set_words(ExactFloat<wtype>& out, wtype* words, upL_t L, bool positive) {
    BasicInt<wtype> number(words, L);
    number.L = L;
    number.update_hash();
    out.set_BasicInt(number, positive);
}

}  // namespace lumo
