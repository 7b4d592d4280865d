/// Arithmetic modulo the Mersenne prime 2^61 - 1: the running hash of numbers. No division anywhere.
///
/// A hash is any 64-bit value; it stands for its residue. 0 and 2^61 - 1 both stand for zero.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo::Hash61 {

inline constexpr std::uint64_t MODULUS = (std::uint64_t(1) << 61) - 1;

/// One reduction step: below 2^61 + 8.
constexpr std::uint64_t fold(std::uint64_t x) {
    return (x & MODULUS) + (x >> 61);
}
/// The residue itself, in [0, 2^61 - 1).
constexpr std::uint64_t canonical(std::uint64_t x) {
    x = fold(x);
    return x >= MODULUS ? x - MODULUS : x;
}
constexpr bool is_zero(std::uint64_t x) {
    return canonical(x) == 0;
}
constexpr bool equal(std::uint64_t a, std::uint64_t b) {
    return canonical(a) == canonical(b);
}

constexpr std::uint64_t add(std::uint64_t a, std::uint64_t b) {
    return fold(fold(a) + fold(b));
}
/// 2^64 = 8 modulo the prime, so -8 is zero.
constexpr std::uint64_t negate(std::uint64_t h) {
    return fold(fold(std::uint64_t(-8) - fold(h)));
}
constexpr std::uint64_t sub(std::uint64_t a, std::uint64_t b) {
    return add(a, negate(b));
}
/// Below 2^61 + 8, whatever 128 bits t holds.
constexpr std::uint64_t fold_128(unsigned __int128 t) {
    const auto low = static_cast<std::uint64_t>(t);
    const auto high = static_cast<std::uint64_t>(t >> 64);
    return fold((static_cast<std::uint64_t>(t >> 61) & 0x1ffffffffffffff8u) + (high >> 58) + fold(low));
}
/// Stays below 2^62, so values may be chained without a full reduction.
constexpr std::uint64_t mul(std::uint64_t a, std::uint64_t b) {
    return fold_128(static_cast<unsigned __int128>(a) * b);
}
constexpr std::uint64_t pow(std::uint64_t base, std::uint64_t exponent) {
    std::uint64_t result = 1;
    for (; exponent != 0; exponent >>= 1) {
        if (exponent & 1) result = mul(result, base);
        base = mul(base, base);
    }
    return result;
}
/// (2^W)^exp for a word of W bits; negative exponents by the inverses 2^58 (of 8) and 2^29 (of 2^32).
template <typename wtype>
constexpr std::uint64_t word_power(spL_t exp) {
    constexpr bool narrow = sizeof(wtype) == 4;
    const std::uint64_t base = exp >= 0 ? (narrow ? std::uint64_t(1) << 32 : 8)
                                        : (narrow ? std::uint64_t(1) << 29 : std::uint64_t(1) << 58);
    return pow(base, exp >= 0 ? static_cast<upL_t>(exp) : upL_t(0) - static_cast<upL_t>(exp));
}

}  // namespace lumo::Hash61
