// Values and expected words for tests of conversions, by GMP.
#pragma once

#include "held_numbers.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/multiply/multiply.h"
#include "scratch.h"

namespace lumo::testing {

inline mpz_class power(const mpz_class& base, upL_t exponent) {
    mpz_class z;
    mpz_pow_ui(z.get_mpz_t(), base.get_mpz_t(), exponent);
    return z;
}

/// A non-negative number with `m` words after the point.
template <typename wtype>
HeldFloat<wtype> test_value(const mpz_class& scaled, upL_t m) {
    return {to_words<wtype>(scaled, mpz_sizeinbase(scaled.get_mpz_t(), 2) / WordTraits<wtype>::bits + 1),
            -static_cast<spL_t>(m)};
}

/// Uniform below 2^(W m).
template <typename wtype>
mpz_class random_scaled(upL_t m, std::mt19937_64& random) {
    const auto words = shaped_words<wtype>(Shape::random, m, random);
    return to_mpz(words.data(), m);
}

/// Floor(scaled / 2^(W m) x R^n), with its integer part or without.
template <typename wtype>
mpz_class expected_integer(mpz_class scaled, upL_t m, const mpz_class& R, upL_t n, bool whole = false) {
    if (!whole) scaled %= unit<wtype>(spL_t(m));
    return scaled * power(R, n) / unit<wtype>(spL_t(m));
}

/// The integer that words of radix R stand for.
template <typename wtype>
mpz_class from_radix(const wtype* words, upL_t n, const mpz_class& R) {
    if (n <= 16) {
        mpz_class z = 0;
        for (upL_t i = n; i-- > 0;) z = z * R + to_mpz(words + i, 1);
        return z;
    }
    const upL_t half = n / 2;
    return from_radix(words + half, n - half, R) * power(R, half) + from_radix(words, half, R);
}

}  // namespace lumo::testing
