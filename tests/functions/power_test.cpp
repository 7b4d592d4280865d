#include "lumo/functions/power.h"

#include "laboratory.h"
#include "real_number.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class PowerTest : public WordTest<wtype> {
 protected:
    static constexpr int W = testing::W<wtype>;

    static double error(const BigFloat<wtype>& T, const BigFloat<wtype>& x, spL_t n, upL_t p) {
        expect_tidy(T, p + 2);
        Real expected((p + 8) * W);
        mpfr_pow_si(expected.value, Real(x).value, n, MPFR_RNDN);
        return expected.relative_error(Real(T), p * W);
    }
    static double word_error(wtype w, spL_t n, upL_t p, upL_t tds = 1) {
        const Power_uW_sL_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, w, n, p, bench.words, bench.word_count); });
        return error(bench.T, HeldFloat<wtype>({w}, 0), n, p);
    }
    static double float_error(const BigFloat<wtype>& x, upL_t n, upL_t p, upL_t tds = 1) {
        const Power_BF_uL_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, &bench.status, bench.T, x, n, p, bench.words, bench.word_count); });
        return error(bench.T, x, static_cast<spL_t>(n), p);
    }
    const std::vector<upL_t> exponents = {
        1,  2,  3,   4,          5,          7,           8,           15,
        16, 63, 100, 0xffffffff, 0x80000000, 0x100000000, 0x1ffffffff, 0x3ffffffffffff};
};
TYPED_TEST_SUITE(PowerTest, WordTypes);

TYPED_TEST(PowerTest, OfWords) {
    for (upL_t p : {1, 2, 3, 8, 9, 10, 11, 12, 30, 64, 333}) {
        for (upL_t n : this->exponents) {
            for (TypeParam w :
                 {TypeParam(1), TypeParam(2), TypeParam(10), TypeParam(-1),
                  TypeParam(1) << (W<TypeParam> - 1), static_cast<TypeParam>(this->random() | 3)}) {
                if (n > 0x200000000 && w > 10) continue;  // the oracle's exponents end here
                ASSERT_LT(this->word_error(w, static_cast<spL_t>(n), p, 1 + p % 4), ERROR_BOUND)
                    << +w << "^" << n << " to " << p;
                ASSERT_LT(this->word_error(w, -static_cast<spL_t>(n), p), 2 * ERROR_BOUND)
                    << +w << "^-" << n << " to " << p;
            }
        }
    }
}

TYPED_TEST(PowerTest, OfFloats) {
    for (upL_t p : {1, 2, 3, 8, 9, 10, 11, 12, 30, 64, 333}) {
        for (upL_t n : this->exponents) {
            for (int i = 0; i < 12; i++) {
                const spL_t exp = n > 100 ? -1 : static_cast<spL_t>(this->random() >> 40) - (1 << 23);
                const upL_t length = n > 0x200000000 ? 1 : 2 * p + 4;
                HeldFloat<TypeParam> x(any_words<TypeParam>(this->random, length), exp, i % 2 == 0);
                if (n > 0x200000000) x.exp = 0, x.T[0] = 3;
                const double growth =
                    std::ldexp(static_cast<double>(n), n >> 32 == 0 ? -W<TypeParam> : -2 * W<TypeParam>);
                ASSERT_LT(this->float_error(x, n, p, 1 + i % 3), ERROR_BOUND * growth)
                    << "n " << n << " p " << p << " round " << i;
            }
        }
    }
}

TYPED_TEST(PowerTest, ExactWhileItFits) {
    const upL_t p = 40;
    const Power_uW_sL_BigFloatR<TypeParam> plan(p, 1);
    Bench<TypeParam> bench(plan, 1);
    const auto power = [&](TypeParam w, spL_t n) {
        plan.run(bench.ctx, bench.status, bench.T, w, n, p, bench.words, bench.word_count);
        return integer_value<TypeParam>(bench.T);
    };
    mpz_class expected;
    for (unsigned long n : {0ul, 1ul, 2ul, 37ul, 200ul}) {
        mpz_ui_pow_ui(expected.get_mpz_t(), 10, n);
        EXPECT_EQ(power(10, static_cast<spL_t>(n)), expected);
    }
    EXPECT_EQ(power(TypeParam(1) << (W<TypeParam> / 2), 1000), mpz_class(1) << (500 * W<TypeParam>));
    EXPECT_EQ(power(0, 0), 1);
    EXPECT_EQ(power(0, 5), 0);
    EXPECT_THROW(power(0, -5), ArithmeticException);
    bench.status.tags.clear();
    EXPECT_EQ(power(3, 1), 3);
}

TYPED_TEST(PowerTest, RefusesWhatThePlanDoesNotHold) {
    const Power_uW_uL_BigFloatR<TypeParam> words(20, 2);
    const Power_BF_uL_BigFloatR<TypeParam> floats(20, 2);
    Bench<TypeParam> bench(words, 2);
    const HeldFloat<TypeParam> x({3}, 0);
    const auto parameter = [&](upL_t p, upL_t tds, bool word_form) {
        bench.ctx.tds = tds;
        return message_of([&] {
            if (word_form)
                words.run(bench.ctx, nullptr, bench.T, TypeParam(3), 5, p, bench.words, bench.word_count);
            else
                floats.run(bench.ctx, nullptr, bench.T, x, 5, p, bench.words, bench.word_count);
        });
    };
    for (bool word_form : {true, false}) {
        EXPECT_EQ(parameter(21, 1, word_form), "Precision");
        EXPECT_EQ(parameter(20, 3, word_form), "Task Decomposition");
        EXPECT_EQ(parameter(20, 2, word_form), "");
    }
}

}  // namespace
}  // namespace lumo::testing
