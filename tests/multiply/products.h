/// The oracle of products, for both word types.
#pragma once

#include "failures.h"
#include "gmp_words.h"
#include "scratch.h"
#include "word_arrays.h"
#include "word_types.h"

namespace lumo::testing {

template <typename wtype>
mpz_class product_of(const std::vector<wtype>& a, const std::vector<wtype>& b) {
    return to_mpz(a.data(), a.size()) * to_mpz(b.data(), b.size());
}

/// Words [s, L) of an integer.
template <typename wtype>
mpz_class window_of(const mpz_class& x, upL_t s, upL_t L) {
    constexpr unsigned W = WordTraits<wtype>::bits;
    mpz_class window = x >> (s * W);
    mpz_fdiv_r_2exp(window.get_mpz_t(), window.get_mpz_t(), (L - s) * W);
    return window;
}

/// Words [s, L) of A B.
template <typename wtype>
mpz_class product_window(const std::vector<wtype>& a, const std::vector<wtype>& b, upL_t s, upL_t L) {
    return window_of<wtype>(product_of(a, b), s, L);
}

}  // namespace lumo::testing
