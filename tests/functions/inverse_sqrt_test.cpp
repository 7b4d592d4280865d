#include "lumo/functions/inverse_sqrt.h"

#include "laboratory.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class InverseSqrtTest : public ::testing::Test {
 protected:
    InverseSqrtTest() { prepare_products(); }

    static double error_of(const BigFloat<wtype>& T, const mpz_class& x, spL_t x_exp, upL_t p) {
        expect_tidy(T, p);
        EXPECT_EQ(T.sign(), 1);
        const mpz_class m = mantissa(T);
        return relative_error<wtype>(m * m * x, W<wtype> * (2 * T.exp + x_exp), 1, promised_words<wtype>(p)) /
               2;
    }
    static double float_error(const BigFloat<wtype>& x, upL_t p, upL_t tds = 1) {
        const InvsqrtFloat_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, x, p, bench.words, bench.word_count); });
        return error_of(bench.T, mantissa(x), x.exp, p);
    }
    static double word_error(wtype x, upL_t p, upL_t tds = 1) {
        const InvsqrtWord_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, x, p, bench.words, bench.word_count); });
        return error_of(bench.T, to_mpz(&x, 1), 0, p);
    }
    std::mt19937_64 random{56};
};
TYPED_TEST_SUITE(InverseSqrtTest, WordTypes);

TYPED_TEST(InverseSqrtTest, FloatsOfEveryPrecisionAndShape) {
    for (upL_t p = 0; p < 1500; p = p < 45 ? p + 1 : p + 1 + this->random() % p) {
        for (int i = 0; i < (p < 45 ? 60 : 12); i++) {
            const spL_t exp =
                i % 3 == 0 ? i % 2 : static_cast<spL_t>(this->random() >> 24) - (spL_t(1) << 39);
            Owned<TypeParam> x(any_words<TypeParam>(this->random, 2 * p + 6), exp);
            ASSERT_LT(this->float_error(x.number, p, 1 + i % 7), ERROR_BOUND) << p << " round " << i;
        }
    }
}

TYPED_TEST(InverseSqrtTest, WordsOfEveryPrecision) {
    for (upL_t p = 0; p < 1500; p = p < 45 ? p + 1 : p + 1 + this->random() % p) {
        std::vector<TypeParam> numbers = {
            1, 2, 3, 4, 5, 10005, TypeParam(-1), TypeParam(1) << (W<TypeParam> - 1)};
        for (int i = 0; i < 8; i++) numbers.push_back(static_cast<TypeParam>(this->random() >> (i * 4)) | 1);
        for (TypeParam x : numbers)
            ASSERT_LT(this->word_error(x, p, 1 + p % 3), ERROR_BOUND) << p << ": " << x;
    }
}

TYPED_TEST(InverseSqrtTest, ExactRoots) {
    for (upL_t p : {1, 2, 9, 10, 11, 40, 150}) {
        EXPECT_EQ(this->word_error(1, p), 0) << p;
        // (k 2^(W j))^-2, whose root is exact although it has several words.
        for (spL_t exp : {-7, -6, 0, 1, 8}) {
            Owned<TypeParam> x({16}, 2 * exp);
            EXPECT_LE(this->float_error(x.number, p), 2) << p;
        }
        for (upL_t length = 2; length < 2 * p + 6; length++) {
            std::vector<TypeParam> above(length), below(length, static_cast<TypeParam>(-1));
            above.front() = above.back() = 1;
            Owned<TypeParam> a(above, 1), b(below, -2);
            ASSERT_LT(this->float_error(a.number, p), ERROR_BOUND) << p << " length " << length;
            ASSERT_LT(this->float_error(b.number, p), ERROR_BOUND) << p << " length " << length;
        }
    }
}

TYPED_TEST(InverseSqrtTest, Refusals) {
    const InvsqrtFloat_BigFloatR<TypeParam> plan(40, 1);
    const InvsqrtWord_BigFloatR<TypeParam> word_plan(40, 1);
    Bench<TypeParam> bench(plan, 1);
    Owned<TypeParam> zero({0}, 0), negative({3}, 0, false);
    const auto message = [&](const auto& run) -> std::string {
        try {
            run();
        } catch (const ArithmeticException& e) {
            return e.message;
        } catch (const InvalidParametersException& e) {
            return e.message;
        }
        return "none";
    };
    const auto run_float = [&](const BigFloat<TypeParam>& x, upL_t p) {
        return message(
            [&] { plan.run(bench.ctx, bench.status, bench.T, x, p, bench.words, bench.word_count); });
    };
    const auto run_word = [&](TypeParam x, upL_t p) {
        return message(
            [&] { word_plan.run(bench.ctx, bench.status, bench.T, x, p, bench.words, bench.word_count); });
    };
    EXPECT_EQ(run_float(zero.number, 40), "Divide by zero.");
    EXPECT_EQ(run_word(0, 40), "Divide by zero.");
    EXPECT_EQ(run_float(negative.number, 40), "Square root of negative number.");
    EXPECT_EQ(run_word(2, 41), "p is larger than plan.");
    bench.ctx.tds = 2;
    EXPECT_EQ(run_float(negative.number, 40), "tds is larger than plan.");
}

TYPED_TEST(InverseSqrtTest, NoticesAFlippedBit) {
    const upL_t p = 400;
    const InvsqrtWord_BigFloatR<TypeParam> word_plan(p, 1);
    const InvsqrtFloat_BigFloatR<TypeParam> float_plan(p, 1);
    Owned<TypeParam> x(shaped_words<TypeParam>(Shape::random, p + 2, this->random), 0);
    for (bool word_form : {true, false}) {
        const auto run = [&](const std::function<void(Bench<TypeParam>&, const std::string&)>& at_step) {
            Bench<TypeParam> bench(float_plan, 1);
            bench.status.at_step = [&](const std::string& tag) { at_step(bench, tag); };
            if (word_form)
                word_plan.run(bench.ctx, bench.status, bench.T, TypeParam(10005), p, bench.words,
                              bench.word_count);
            else
                float_plan.run(bench.ctx, bench.status, bench.T, x.number, p, bench.words, bench.word_count);
        };
        int levels = 0;
        run([&](Bench<TypeParam>&, const std::string& tag) { levels += tag == " 0S "; });
        for (upL_t index = 20; index < p / 2 - 5; index += 17) {
            int level = 0;
            const auto damage = [&](Bench<TypeParam>& bench, const std::string& tag) {
                if (tag == " 0S " && ++level == levels)
                    bench.words[index] ^= TypeParam(1) << index % W<TypeParam>;
            };
            EXPECT_THROW(run(damage), AlgorithmFailedException) << "word " << index;
        }
    }
}

}  // namespace
}  // namespace lumo::testing
