/// Words of one term: products of small factors, and values of polynomials. Numbers are little-endian arrays
/// of LeafTerm::MAX_WORDS words without leading zero words.
#pragma once

#include <algorithm>
#include <cassert>
#include <span>

#include "lumo/series/leaf_numbers.h"
#include "lumo/series/series_common_p2b3.h"

namespace velmora {

/// Multiplies factors below 2^63 into an array, which holds 1 or what it is told to, gathering small ones
/// into one before each pass.
template <typename wtype>
class LeafProduct {
 public:
    explicit LeafProduct(wtype* words) : T(words) { T[0] = 1; }
    LeafProduct(wtype* words, lumo::upL_t length) : T(words), L(length) {}

    void multiply(std::uint64_t factor) {
        assert(factor >> 63 == 0);
        const unsigned __int128 product = static_cast<unsigned __int128>(gathered) * factor;
        if (product >> 63 != 0) {
            flush();
            gathered = factor;
        } else {
            gathered = static_cast<std::uint64_t>(product);
        }
    }
    void multiply(std::uint64_t factor, unsigned power) {
        for (; power != 0; --power) multiply(factor);
    }
    /// Returns the length; nothing may be multiplied afterwards.
    lumo::upL_t length() {
        flush();
        return L;
    }

 private:
    void flush() {
        if (gathered == 1) return;
        L = lumo::multiply_add(T, L, gathered, 0);
        gathered = 1;
    }
    wtype* T;
    lumo::upL_t L = 1;
    std::uint64_t gathered = 1;
};

/// T[0 .. returned length) := A B for short arrays; T overlaps neither.
template <typename wtype>
lumo::upL_t set_words_product(wtype* T, const wtype* A, lumo::upL_t AL, const wtype* B, lumo::upL_t BL) {
    std::fill_n(T, AL + BL, wtype(0));
    for (lumo::upL_t j = 0; j < BL; ++j) {
        unsigned __int128 carry = 0;
        for (lumo::upL_t i = 0; i < AL; ++i) {
            carry += static_cast<unsigned __int128>(A[i]) * B[j] + T[i + j];
            T[i + j] = static_cast<wtype>(carry);
            carry >>= lumo::WordTraits<wtype>::bits;
        }
        T[AL + j] = static_cast<wtype>(carry);
    }
    lumo::upL_t L = AL + BL;
    while (L != 0 && T[L - 1] == 0) --L;
    return L;
}

/// T[0 .. returned length) := the value at k of the polynomial whose coefficients stand from the constant
/// term upward. The value must not be negative.
template <typename wtype>
lumo::upL_t set_polynomial(wtype* T, std::span<const std::int64_t> coefficients, std::uint64_t k);

}  // namespace velmora
