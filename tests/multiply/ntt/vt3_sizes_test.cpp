// Primes, prime sets and the size table against GMP.
#include <gmpxx.h>
#include <gtest/gtest.h>

#include <cmath>

#include "lumo/multiply/ntt/vt3/vt3_footprint.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"
#include "lumo/multiply/ntt/vt3/vt3_primes.h"

using namespace lumo;

TEST(Vt3Primes, AreAllPrimesOfTheirForm) {
    std::vector<std::uint16_t> expected;
    for (unsigned c = 1980; c > 0; c--)
        if (mpz_class p = (mpz_class(c) << 37) + 1; mpz_probab_prime_p(p.get_mpz_t(), 30))
            expected.push_back(std::uint16_t(c));
    const auto factors = vt3_prime_factors();
    EXPECT_EQ(std::vector<std::uint16_t>(factors.begin(), factors.end()), expected);
    EXPECT_EQ(vt3_prime_value(factors[0]), 0xf78000000001u);
}

TEST(Vt3PrimeSets, JoinResidues) {
    unsigned sets = 0;
    for (unsigned n = 6; n <= 10; n++)
        for (unsigned m : {1u, 3u, 5u, 7u})
            for (unsigned k : {9u, 37u, 38u, 39u}) {
                const Vt3PrimeSet* set = vt3_prime_set(n, m, k);
                if (!set) continue;
                sets++;
                mpz_class product = 1;
                for (unsigned i = 0; i < n; i++) {
                    product *= mpz_class(set->p[i]);
                    EXPECT_EQ((set->p[i] - 1) % (upL_t(m) << k), 0u);
                    // The kernels put digits together from pieces of 48 bits without reducing them.
                    EXPECT_TRUE(m != 1 || set->p[i] > upL_t(1) << 47);
                }
                auto number = [](const std::uint64_t* limbs, unsigned count, unsigned bits) {
                    mpz_class value = 0;
                    for (unsigned w = count; w-- > 0;) value = (value << bits) + mpz_class(limbs[w]);
                    return value;
                };
                EXPECT_EQ(number(set->product, 8, 64), product);
                EXPECT_EQ(number(set->crt.minus64, 8, 64), (mpz_class(1) << 512) - product);
                EXPECT_EQ(number(set->crt.minus52, n, 52), (mpz_class(1) << (52 * n)) - product);
                for (unsigned i = 0; i < n; i++) {
                    const mpz_class p(set->p[i]), cofactor = product / p;
                    EXPECT_EQ(number(set->crt.cofactor64[i], 8, 64), cofactor);
                    EXPECT_EQ(number(set->crt.cofactor52[i], n, 52), cofactor);
                    EXPECT_EQ(mpz_class(cofactor * mpz_class(set->cofactor_inverse[i]) % p), 1);
                }
                for (unsigned b = 24 * (n - 1); b <= 24 * (n - 1) + 24; b++) {
                    const mpz_class bound = (mpz_class(m) << (k + 2 * b + 2));
                    EXPECT_EQ(set->holds(m, k, b), bound <= product) << n << " " << m << " " << k << " " << b;
                }
            }
    EXPECT_GT(sets, 50u);
}

TEST(Vt3Sizes, GrowInSmallSteps) {
    const auto sizes = vt3_sizes();
    for (std::size_t i = 0; i < sizes.size(); i++) {
        const Vt3Size& size = sizes[i];
        EXPECT_EQ(size.bits() % 64, 0u);
        EXPECT_TRUE(vt3_prime_set(size.n, size.m, size.k)->holds(size.m, size.k, size.b));
        const auto shape = size.shape();
        EXPECT_EQ(shape.rows() * shape.columns(), size.points());
        EXPECT_TRUE(shape.log_h >= 3 && shape.log_c >= 4);
        if (i == 0 || size.bits() < 245760 || size.bits() > upL_t(1) << 44) continue;
        EXPECT_LT(double(size.bits()), 1.3 * double(sizes[i - 1].bits())) << i;
        // An image takes little more than three times the product.
        if (size.bits() > 1 << 23) {
            EXPECT_LT(Vt3Footprint(size, 1).image, 3.1 * double(size.bits()) / 8 * 128 / 120) << i;
        }
    }
}
