// The primes of the 64-bit transform and what they can hold, against GMP.
#include <gmpxx.h>
#include <gtest/gtest.h>

#include "lumo/multiply/ntt/n64/n64_primes.h"
#include "lumo/multiply/ntt/n64/n64_sizes.h"

using namespace lumo;

namespace {

mpz_class power(std::uint64_t base, std::uint64_t exponent, std::uint64_t p) {
    mpz_class result;
    mpz_powm_ui(result.get_mpz_t(), mpz_class(base).get_mpz_t(), exponent, mpz_class(p).get_mpz_t());
    return result;
}

}  // namespace

TEST(N64Primes, HoldTheCoefficientsOfEveryLength) {
    unsigned held = 0;
    for (unsigned m : {1u, 3u, 5u, 7u})
        for (unsigned k = 48; k <= N64_MOST_TWOS; k++) {
            if (!n64_primes_hold(m, k)) continue;
            held++;
            mpz_class product = 1;
            std::uint64_t next = N64_LARGEST_PRIME + 1;
            for (const N64Prime& prime : n64_prime_set(m, k, 1)) {
                const std::uint64_t p = prime.field.p, step = std::uint64_t(m) << k;
                EXPECT_NE(mpz_probab_prime_p(mpz_class(p).get_mpz_t(), 30), 0);
                EXPECT_EQ((p - 1) % step, 0u);
                // None between it and the one before.
                for (std::uint64_t c = p + step; c < next; c += step)
                    EXPECT_EQ(mpz_probab_prime_p(mpz_class(c).get_mpz_t(), 30), 0);
                next = p;
                product *= mpz_class(p);
                EXPECT_EQ(power(prime.order[k], upL_t(1) << (k - 1), p), p - 1);
                EXPECT_EQ(power(prime.odd_order, m, p), 1);
                EXPECT_EQ(prime.odd_order == 1, m == 1);
            }
            const mpz_class digit = ~std::uint64_t(0);
            EXPECT_LT(digit * digit * m << k, product) << m << " " << k;
        }
    EXPECT_EQ(held, 9u + 7u + 6u + 5u);
    EXPECT_EQ(n64_prime_set(1, 10, 1)[0].field.p, N64_LARGEST_PRIME);
}

TEST(N64Primes, FieldAtTheEndsOfItsRange) {
    const N64Field f = n64_prime_set(1, 10, 1)[0].field;
    const mpz_class p = f.p, inverse_radix = [&] {
        mpz_class x = mpz_class(1) << 64;
        mpz_invert(x.get_mpz_t(), x.get_mpz_t(), p.get_mpz_t());
        return x;
    }();
    const std::uint64_t values[] = {0, 1, 2, f.p / 2, f.p / 2 + 1, f.p - 2, f.p - 1};
    for (std::uint64_t a : values)
        for (std::uint64_t b : values) {
            const mpz_class x = a, y = b;
            EXPECT_EQ(mpz_class(f.add(a, b)), (x + y) % p);
            EXPECT_EQ(mpz_class(f.sub(a, b)), (x + p - y) % p);
            EXPECT_EQ(mpz_class(f.mul_var(a, b)), x * y * inverse_radix % p);
            for (std::uint64_t any : {a, ~a, ~std::uint64_t(0)})
                EXPECT_EQ(mpz_class(f.mul(any, n64_factor(b, f.p))), mpz_class(any) * y % p);
        }
}
