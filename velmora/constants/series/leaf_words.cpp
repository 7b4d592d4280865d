#include "velmora/constants/series/leaf_words.h"

#include <bit>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/numbers/words/words.h"

namespace velmora {
namespace {

using lumo::upL_t;

template <typename wtype>
upL_t store(wtype* T, unsigned __int128 value) {
    upL_t L = 0;
    for (; value != 0; value >>= lumo::WordTraits<wtype>::bits) T[L++] = static_cast<wtype>(value);
    return L;
}

/// Sign and magnitude, long enough for every step of Horner's scheme.
template <typename wtype>
class Horner {
 public:
    Horner(wtype* words, std::int64_t top) : T(words), L(0), positive(true) { add(top); }

    void multiply(std::uint64_t k) {
        unsigned __int128 carry = 0;
        for (upL_t i = 0; i < L; ++i) {
            carry += static_cast<unsigned __int128>(T[i]) * k;
            T[i] = static_cast<wtype>(carry);
            carry >>= lumo::WordTraits<wtype>::bits;
        }
        for (; carry != 0; carry >>= lumo::WordTraits<wtype>::bits) T[L++] = static_cast<wtype>(carry);
    }
    void add(std::int64_t c) {
        wtype words[64 / lumo::WordTraits<wtype>::bits];
        const upL_t count = store(words, c < 0 ? upL_t(0) - static_cast<upL_t>(c) : static_cast<upL_t>(c));
        for (; L < count; ++L) T[L] = 0;
        T[L] = 0;
        if (positive == (c >= 0)) {
            const wtype carry = lumo::bp_add(T, T, words, count, wtype(0));
            lumo::bp_add_scalar<wtype>(carry, T + count, ++L - count);
        } else {
            const wtype borrow = lumo::bp_sub(T, T, words, count, wtype(0));
            if (borrow != 0 && (L == count || lumo::bp_add_scalar<wtype>(-1, T + count, L - count) != 0)) {
                lumo::bp_not(T, T, L);
                lumo::bp_add_scalar<wtype>(1, T, L);
                positive = !positive;
            }
        }
        while (L != 0 && T[L - 1] == 0) --L;
        if (L == 0) positive = true;
    }
    upL_t length() const {
        lumo::require(positive, "A polynomial of a series is negative.", "set_polynomial()");
        return L;
    }

 private:
    wtype* T;
    upL_t L;
    bool positive;
};

}  // namespace

template <typename wtype>
upL_t set_polynomial(wtype* T, std::span<const std::int64_t> coefficients, std::uint64_t k) {
    const upL_t degree = coefficients.size() - 1;
    // Coefficients of at most 2^32 leave room in 128 bits as long as the powers of k do.
    const bool narrow =
        std::bit_width(k) * degree + 36 < 127 && std::ranges::all_of(coefficients, [](std::int64_t c) {
            return c < (std::int64_t(1) << 32) && -c < (std::int64_t(1) << 32);
        });
    if (narrow) {
        __int128 value = coefficients[degree];
        for (upL_t i = degree; i-- != 0;) value = value * static_cast<__int128>(k) + coefficients[i];
        lumo::require(value >= 0, "A polynomial of a series is negative.", "set_polynomial()");
        return store(T, static_cast<unsigned __int128>(value));
    }
    Horner<wtype> value(T, coefficients[degree]);
    for (upL_t i = degree; i-- != 0;) {
        value.multiply(k);
        value.add(coefficients[i]);
    }
    return value.length();
}

template upL_t set_polynomial(std::uint32_t*, std::span<const std::int64_t>, std::uint64_t);
template upL_t set_polynomial(std::uint64_t*, std::span<const std::int64_t>, std::uint64_t);

}  // namespace velmora
