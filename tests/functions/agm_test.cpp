#include "lumo/functions/agm.h"

#include "failures.h"
#include "laboratory.h"
#include "lumo/functions/log_agm.h"
#include "real_number.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class AgmTest : public WordTest<wtype> {
 protected:
    static constexpr int W = testing::W<wtype>;
    using Number = BigFloat<wtype>;

    static double error(const Number& T, const Number& a, const Number& b, upL_t p) {
        expect_tidy(T, p);
        Real expected((p + 8) * W);
        mpfr_agm(expected.value, Real(a).value, Real(b).value, MPFR_RNDN);
        return expected.relative_error(Real(T), p * W);
    }
    static double two(const Number& a, const Number& b, upL_t p, upL_t tds = 1) {
        const AGM2_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, a, b, p, bench.words, bench.word_count); });
        return error(bench.T, a, b, p);
    }
    static double one(const Number& x, upL_t p, upL_t tds = 1) {
        const AGM1_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, x, p, bench.words, bench.word_count); });
        return error(bench.T, HeldFloat<wtype>({1}, 0), x, p);
    }
    /// |T - ln x| in units of 2^(-W p).
    static double log_error(const Number& x, upL_t p, upL_t tds = 1) {
        const Log_AGM_BigFloatR<wtype> plan(p, tds);
        Real pi((p + 6) * W), ln2((p + 6) * W);
        mpfr_const_pi(pi.value, MPFR_RNDZ);
        mpfr_const_log2(ln2.value, MPFR_RNDZ);
        const HeldFloat<wtype> pi_words = held(pi, p + 4), ln2_words = held(ln2, p + 4);
        Bench<wtype> bench(plan, tds);
        bench.quietly([&] {
            plan.run(bench.ctx, bench.status, bench.T, x, pi_words, ln2_words, bench.words, bench.word_count);
        });
        Real expected((p + 8) * W);
        mpfr_log(expected.value, Real(x).value, MPFR_RNDN);
        mpfr_sub(expected.value, expected.value, Real(bench.T).value, MPFR_RNDN);
        mpfr_mul_2ui(expected.value, expected.value, p * W, MPFR_RNDN);
        return std::fabs(mpfr_get_d(expected.value, MPFR_RNDN));
    }

 private:
    /// `words` words behind the point.
    static HeldFloat<wtype> held(const Real& x, upL_t words) {
        mpz_class scaled;
        Real moved(mpfr_get_prec(x.value) + W);
        mpfr_mul_2ui(moved.value, x.value, words * W, MPFR_RNDZ);
        mpfr_get_z(scaled.get_mpz_t(), moved.value, MPFR_RNDZ);
        return HeldFloat<wtype>(to_words<wtype>(scaled, words + 1), -static_cast<spL_t>(words));
    }
};
TYPED_TEST_SUITE(AgmTest, WordTypes);

TYPED_TEST(AgmTest, EveryPrecisionAndRatio) {
    for (upL_t p = 1; p < 700; p = p < 14 ? p + 1 : 2 * p + this->random() % p) {
        for (int i = 0; i < 24; i++) {
            const spL_t exp = i % 3 == 0 ? 0 : static_cast<spL_t>(this->random() % 2000) - 1000;
            const HeldFloat<TypeParam> a(any_words<TypeParam>(this->random, 2 * p + 6), exp);
            const HeldFloat<TypeParam> b(any_words<TypeParam>(this->random, 2 * p + 6), i % 2 == 0 ? exp : 0);
            ASSERT_LT(this->two(a, b, p, 1 + i % 3), 16) << p << " round " << i;
            ASSERT_LT(this->one(a, p, 1 + i % 3), 16) << p << " round " << i;
        }
    }
}

TYPED_TEST(AgmTest, EqualNumbersAndZeros) {
    const HeldFloat<TypeParam> x({3, 5, 7}, -1), zero({0}, 0), one({1}, 0), negative({3}, 0, false);
    for (upL_t p : {1, 4, 30}) {
        EXPECT_LT(this->two(x, x, p), 1);
        EXPECT_EQ(this->one(one, p), 0);
        const AGM2_BigFloatR<TypeParam> plan(p, 1);
        const AGM1_BigFloatR<TypeParam> plan1(p, 1);
        Bench<TypeParam> bench(plan, 1);
        // A zero decides before a sign does.
        const BigFloat<TypeParam>* const pairs[][2] = {{&x, &zero}, {&negative, &zero}, {&zero, &negative}};
        for (const auto& [a, b] : pairs) {
            bench.T.set_word(1);
            plan.run(bench.ctx, bench.status, bench.T, *a, *b, p, bench.words, bench.word_count);
            EXPECT_TRUE(bench.T.is_zero());
        }
        plan1.run(bench.ctx, bench.status, bench.T, zero, p, bench.words, bench.word_count);
        EXPECT_TRUE(bench.T.is_zero());
    }
}

// What a reader of the console sees: every round counts up to the total that the first one announced.
TYPED_TEST(AgmTest, LabelsOfTheStepsAndTheNumberOfRounds) {
    const auto text_of = [](const BigFloat<TypeParam>& a, const BigFloat<TypeParam>* b, upL_t p) {
        const AGM2_BigFloatR<TypeParam> two(p, 1);
        const AGM1_BigFloatR<TypeParam> one(p, 1);
        Bench<TypeParam> bench(two, 1);
        if (b)
            two.run(bench.ctx, bench.status, bench.T, a, *b, p, bench.words, bench.word_count);
        else
            one.run(bench.ctx, bench.status, bench.T, a, p, bench.words, bench.word_count);
        return bench.status.upper;
    };
    const auto rounds_of = [](const std::string& text) {
        std::size_t rounds = 0;
        for (std::size_t at = 0; (at = text.find(" 3Q ", at)) != std::string::npos; at++) rounds++;
        return rounds;
    };
    const HeldFloat<TypeParam> one({1}, 0), tiny({7}, -1 << 20);
    const std::string round = " 1A  2M  3Q  4M  5S  0A ", end = "AGM: Final 0A  1S ";
    EXPECT_EQ(text_of(one, &one, 9), "AGM(a,b)   0A " + end);
    for (const upL_t p : {1, 2, 3, 10, 52, 300}) {
        for (int i = 0; i < 12; i++) {
            const HeldFloat<TypeParam> a(any_words<TypeParam>(this->random, p), 0),
                b(any_words<TypeParam>(this->random, p), i % 3 ? 0 : -60 * i);
            for (const BigFloat<TypeParam>* partner :
                 {&b, &tiny, static_cast<const HeldFloat<TypeParam>*>(nullptr)}) {
                const std::string text = text_of(a, partner, p);
                const std::size_t total = rounds_of(text);
                std::string expected = partner ? "AGM(a,b)   0A " : "AGM(1,x)  (start) 0A  1Q  2M  0A ";
                for (std::size_t r = 1; r <= total; r++)
                    expected += "AGM: " + std::to_string(r) + " (" + std::to_string(total) + ")" + round;
                EXPECT_EQ(text, expected + end) << p << " round " << i;
            }
        }
    }
}

TYPED_TEST(AgmTest, Logarithms) {
    for (const upL_t p : {1, 2, 3, 9, 10, 11, 40, 200}) {
        for (int i = 0; i < 16; i++) {
            const spL_t exp = i % 4 == 0 ? 0 : static_cast<spL_t>(this->random() % 60) - 30;
            const HeldFloat<TypeParam> x(any_words<TypeParam>(this->random, p + 3), exp);
            ASSERT_LT(this->log_error(x, p, 1 + i % 3), 16) << p << " round " << i;
        }
        // Near one, where nearly everything cancels, and far from it, where the shift outgrows 32 bits.
        std::vector<TypeParam> above(p + 1);
        above.front() = above.back() = 1;
        for (const auto& x :
             {HeldFloat<TypeParam>({1}, 0), HeldFloat<TypeParam>({2}, 0),
              HeldFloat<TypeParam>(above, -static_cast<spL_t>(p)), HeldFloat<TypeParam>({5}, 1 << 20)})
            ASSERT_LT(this->log_error(x, p), 16) << p;
    }
}

TYPED_TEST(AgmTest, Refusals) {
    const AGM2_BigFloatR<TypeParam> plan(20, 1);
    const AGM1_BigFloatR<TypeParam> plan1(20, 1);
    const Log_AGM_BigFloatR<TypeParam> log_plan(16, 1);
    Bench<TypeParam> bench(log_plan, 1);
    Bench<TypeParam> small(plan, 1);
    const HeldFloat<TypeParam> one({1}, 0), zero({0}, 0), negative({3}, 0, false);
    const HeldFloat<TypeParam> huge({1}, spL_t(1) << 58);
    const auto two = [&](const BigFloat<TypeParam>& a, const BigFloat<TypeParam>& b, upL_t p) {
        return message_of(
            [&] { plan.run(small.ctx, small.status, small.T, a, b, p, small.words, small.word_count); });
    };
    EXPECT_EQ(two(one, negative, 20), "One of the inputs is negative.");
    EXPECT_EQ(two(negative, one, 20), "One of the inputs is negative.");
    EXPECT_EQ(two(one, one, 21), "p is larger than plan.");
    EXPECT_EQ(message_of([&] {
                  plan1.run(small.ctx, small.status, small.T, negative, 20, small.words, small.word_count);
              }),
              "AGM of negative number.");
    const auto log_of = [&](const BigFloat<TypeParam>& x) {
        return message_of([&] {
            log_plan.run(bench.ctx, bench.status, bench.T, x, one, one, bench.words, bench.word_count);
        });
    };
    EXPECT_EQ(log_of(zero), "Log(0)");
    EXPECT_EQ(log_of(negative), "Log of a negative number is complex.");
    EXPECT_EQ(log_of(huge), "Exponent of the argument.");
}

}  // namespace
}  // namespace lumo::testing
