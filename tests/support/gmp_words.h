/// Word arrays and number objects as GMP integers, and random operands of the shapes that find faults.
#pragma once

#include <gmpxx.h>

#include <random>
#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo::testing {

template <typename wtype>
mpz_class to_mpz(const wtype* T, upL_t L) {
    mpz_class value;
    mpz_import(value.get_mpz_t(), L, -1, sizeof(wtype), 0, 0, T);
    return value;
}

/// Signed integer part behind an object with T, L and positive: the value over 2^(W exp).
template <typename Number>
mpz_class mantissa(const Number& x) {
    const mpz_class magnitude = to_mpz(x.T, x.L);
    return x.positive ? magnitude : mpz_class(-magnitude);
}

/// The value of an object whose exponent is not negative.
template <typename wtype, typename Number>
mpz_class integer_value(const Number& x) {
    return mantissa(x) << (static_cast<unsigned long>(x.exp) * WordTraits<wtype>::bits);
}

}  // namespace lumo::testing
