/// Words of one term: products of small factors, and values of polynomials. Numbers are little-endian arrays
/// of LeafTerm::MAX_WORDS words without leading zero words.
#pragma once

#include <algorithm>
#include <span>

#include "lumo/series/leaf_numbers.h"
#include "lumo/series/series_common_p2b3.h"

namespace velmora {

/// Multiplies factors below 2^63 into an array, which holds 1 or what it is told to, gathering small ones
/// into one before each pass. A factor that is not below 2^63 is fatal.
template <typename wtype>
class LeafProduct {
 public:
    explicit LeafProduct(wtype* words) : T(words) { T[0] = 1; }
    LeafProduct(wtype* words, lumo::upL_t length) : T(words), L(length) {}

    void multiply(std::uint64_t factor) {
        lumo::require(factor >> 63 == 0, "A factor of a series is too large.", "LeafProduct::multiply()");
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

/// T[0 .. returned length) := the value at k of the polynomial whose coefficients stand from the constant
/// term upward. The value must not be negative.
template <typename wtype>
lumo::upL_t set_polynomial(wtype* T, std::span<const std::int64_t> coefficients, std::uint64_t k);

}  // namespace velmora
