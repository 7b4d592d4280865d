// Division by one word against GMP, and the check that meets a fault of the machine.
#include <gtest/gtest.h>

#include "failures.h"
#include "faulty_machine.h"
#include "gmp_words.h"
#include "lumo/numbers/words/shoup_divider.h"
#include "pool_context.h"
#include "word_arrays.h"
#include "word_types.h"

namespace lumo {
namespace {

using namespace testing;

template <typename wtype>
class Division : public WordTest<wtype> {
 protected:
    std::vector<wtype> divisors() {
        constexpr wtype limit = wtype(1) << (WordTraits<wtype>::bits - 1);
        std::vector<wtype> list = {3, 5, 10, limit - 1, limit - 2, limit / 2 + 1, limit / 2 - 1};
        if (sizeof(wtype) == 8) list.push_back(static_cast<wtype>(1000000000000000000u));
        while (list.size() < 40) {
            const wtype d = static_cast<wtype>(this->random()) % limit >> this->random() % 20;
            if (d > 2 && (d & (d - 1)) != 0) list.push_back(d);
        }
        return list;
    }
    wtype edge_below(wtype d) {
        const wtype edges[] = {0, 1, static_cast<wtype>(d - 1), static_cast<wtype>(this->random() % d)};
        return edges[this->random() % 4];
    }
};
TYPED_TEST_SUITE(Division, WordTypes);

TYPED_TEST(Division, ModularOperationsAgreeWithGmp) {
    using wtype = TypeParam;
    for (wtype d : this->divisors()) {
        const ShoupDivider<wtype> D(d);
        const mpz_class z = to_mpz(&d, 1), base = mpz_class(1) << WordTraits<wtype>::bits;
        EXPECT_EQ(((to_mpz(&D.inv_hi, 1) << WordTraits<wtype>::bits) + to_mpz(&D.inv_lo, 1)),
                  (base * base - 1) / z);
        for (int i = 0; i < 50; i++) {
            const wtype a = this->edge_below(d), b = this->edge_below(d);
            const wtype sum = D.add(a, b), product = D.mul(a, b), shifted = D.shift(a);
            ASSERT_EQ(to_mpz(&sum, 1), (to_mpz(&a, 1) + to_mpz(&b, 1)) % z) << d;
            ASSERT_EQ(to_mpz(&product, 1), (to_mpz(&a, 1) * to_mpz(&b, 1)) % z) << d;
            ASSERT_EQ(to_mpz(&shifted, 1), (to_mpz(&a, 1) * base) % z) << d;
        }
        EXPECT_EQ(D.pow2W(0), 1u);
        for (upL_t e : {1, 2, 3, 100, 12345}) {
            mpz_class expected;
            mpz_powm_ui(expected.get_mpz_t(), base.get_mpz_t(), e, z.get_mpz_t());
            const wtype power = D.pow2W(e);
            EXPECT_EQ(to_mpz(&power, 1), expected) << d;
        }
    }
}

TYPED_TEST(Division, QuotientsAndRemaindersAgreeWithGmpHoweverCut) {
    using wtype = TypeParam;
    for (wtype d : this->divisors()) {
        const ShoupDivider<wtype> D(d);
        const mpz_class z = to_mpz(&d, 1);
        for (upL_t L : {0, 1, 2, 50, 999, 1000, 1001, 5003})
            for (Shape shape : {Shape::random, Shape::ones, Shape::runs}) {
                const auto a = shaped_words<wtype>(shape, L, this->random);
                const wtype top = this->edge_below(d);
                const mpz_class high = to_mpz(&top, 1) << (L * WordTraits<wtype>::bits);
                const mpz_class dividend = high + to_mpz(a.data(), L);
                const wtype residue = bp_mod(D, a.data(), L, top);
                ASSERT_EQ(to_mpz(&residue, 1), dividend % z);
                for (upL_t tds : ALL_TDS) {
                    SCOPED_TRACE(::testing::Message() << "d " << d << " L " << L << " tds " << tds);
                    auto t = a;
                    const wtype r = bp_div_np(D, t.data(), t.data(), L, top, pool_context(tds));
                    ASSERT_EQ(to_mpz(t.data(), L), dividend / z);
                    ASSERT_EQ(r, residue);
                    const wtype r_zeros = bp_div_ex(D, t.data(), L, top, pool_context(tds));
                    ASSERT_EQ(to_mpz(t.data(), L), high / z);
                    ASSERT_EQ(to_mpz(&r_zeros, 1), high % z);
                }
            }
    }
}

TYPED_TEST(Division, RefusesWhatItCannotDivide) {
    using wtype = TypeParam;
    for (wtype d : {wtype(0), wtype(1), wtype(2), wtype(1024)})
        EXPECT_EQ(refusal([&] { ShoupDivider<wtype> divider(d); }),
                  "ShoupDivider() Untested with power-of-two.");
    for (unsigned shift : {0u, 1u})
        EXPECT_EQ(refusal([&] {
                      ShoupDivider<wtype> divider(
                          static_cast<wtype>((wtype(1) << (WordTraits<wtype>::bits - 1)) + shift));
                  }),
                  "ShoupDivider() Divisor is too large.");
    const ShoupDivider<wtype> D(10);
    wtype word = 1;
    EXPECT_EQ(refusal([&] { bp_mod<wtype>(D, &word, 1, 10); }), "mod() Top word is too large.");
    EXPECT_EQ(refusal([&] { bp_div_np<wtype>(D, &word, &word, 1, 10); }), "divmod(A) Top word is too large.");
    EXPECT_EQ(refusal([&] { bp_div_ex<wtype>(D, &word, 1, 10); }), "divmod() Top word is too large.");
}

TYPED_TEST(Division, BlocksThatDisagreeAreReported) {
    using wtype = TypeParam;
    auto a = shaped_words<wtype>(Shape::random, 5000, this->random);
    for (upL_t place : {0, 2500, 4999}) {
        FaultyMachine<wtype> machine(a[place]);
        std::vector<wtype> t(a.size());
        EXPECT_EQ(refusal([&] {
                      bp_div_np(ShoupDivider<wtype>(1000003), t.data(), a.data(), a.size(), wtype(5),
                                {4, &machine});
                  }),
                  "bp_div_np(A) Mismatching block residuals.")
            << "a flipped bit in word " << place;
    }
}

}  // namespace
}  // namespace lumo
