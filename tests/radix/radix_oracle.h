// Values and expected words for tests of conversions, by GMP.
#pragma once

#include "gmp_words.h"
#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/big_float.h"

namespace lumo::test {

template <typename wtype>
constexpr unsigned W = WordTraits<wtype>::bits;

using testing::to_mpz;

/// Words of a non-negative integer, `L` of them.
template <typename wtype>
std::vector<wtype> to_words(const mpz_class& z, upL_t L) {
    std::vector<wtype> words(std::max<upL_t>(L, mpz_sizeinbase(z.get_mpz_t(), 2) / W<wtype> + 1));
    mpz_export(words.data(), nullptr, -1, sizeof(wtype), 0, 0, z.get_mpz_t());
    words.resize(L);
    return words;
}

inline mpz_class power(const mpz_class& base, upL_t exponent) {
    mpz_class z;
    mpz_pow_ui(z.get_mpz_t(), base.get_mpz_t(), exponent);
    return z;
}

/// A non-negative number with `m` words after the point; owns its words.
template <typename wtype>
struct TestValue {
    TestValue(const mpz_class& scaled, upL_t m)
        : words(to_words<wtype>(scaled, mpz_sizeinbase(scaled.get_mpz_t(), 2) / W<wtype> + 1)) {
        number.T = number.base = words.data();
        number.capacity = words.size();
        number.L = bp_strip<wtype>(0, words.data(), words.size());
        number.exp = number.L == 0 ? 0 : -static_cast<spL_t>(m);
    }
    std::vector<wtype> words;
    BigFloat<wtype> number;
};

/// Uniform below 2^(W m).
template <typename wtype>
mpz_class random_scaled(upL_t m, std::mt19937_64& random) {
    std::vector<std::uint64_t> words(m * W<wtype> / 64 + 1);
    for (auto& word : words) word = random();
    mpz_class z = to_mpz(words.data(), words.size());
    mpz_fdiv_r_2exp(z.get_mpz_t(), z.get_mpz_t(), m * W<wtype>);
    return z;
}

/// Floor(scaled / 2^(W m) x R^n) without its integer part's words.
template <typename wtype>
mpz_class expected_integer(const mpz_class& scaled, upL_t m, wtype R, upL_t n) {
    mpz_class z;
    mpz_fdiv_r_2exp(z.get_mpz_t(), scaled.get_mpz_t(), m * W<wtype>);
    const mpz_class radix = to_mpz(&R, 1);
    z *= power(radix, n);
    mpz_fdiv_q_2exp(z.get_mpz_t(), z.get_mpz_t(), m * W<wtype>);
    return z;
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

/// Scratch of exactly the bytes planned, with a pattern behind it that must survive.
class GuardedScratch {
 public:
    explicit GuardedScratch(upL_t bytes)
        : size(bytes), block(make_aligned<unsigned char>(bytes + GUARD, 4096)) {
        for (upL_t i = 0; i < GUARD; i++) block[size + i] = 0xa5;
    }
    AlignedBufferC buffer() const { return {block.get(), size}; }
    bool intact() const {
        for (upL_t i = 0; i < GUARD; i++)
            if (block[size + i] != 0xa5) return false;
        return true;
    }

 private:
    static constexpr upL_t GUARD = 256;
    upL_t size;
    AlignedPtr<unsigned char> block;
};

}  // namespace lumo::test
