#include "lumo/functions/reciprocal.h"

#include "laboratory.h"
#include "lumo/foundation/parallel/spawn.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class ReciprocalTest : public ::testing::Test {
 protected:
    using Plan = Reciprocal_BigFloatR<wtype>;
    ReciprocalTest() { prepare_products(); }

    static void run(const Plan& plan, Bench<wtype>& bench, const BigFloat<wtype>& x, upL_t p) {
        plan.run(bench.ctx, bench.status, bench.T, x, p, bench.words, bench.word_count);
    }
    /// Error of 1 / x in the planned buffers.
    static double error(const BigFloat<wtype>& x, upL_t p, upL_t planned_p) {
        const Plan plan(planned_p, 1);
        Bench<wtype> bench(plan, 1);
        bench.quietly([&] { run(plan, bench, x, p); });
        expect_tidy(bench.T, p);
        return relative_error<wtype>(mantissa(bench.T) * mantissa(x), W<wtype> * (bench.T.exp + x.exp), 1,
                                     promised_words<wtype>(p));
    }
    std::mt19937_64 random{12};
};
TYPED_TEST_SUITE(ReciprocalTest, WordTypes);

TYPED_TEST(ReciprocalTest, EveryPrecisionAndShape) {
    for (upL_t p = 0; p < 1500; p = p < 45 ? p + 1 : p + 1 + this->random() % p) {
        for (int i = 0; i < (p < 45 ? 60 : 12); i++) {
            const spL_t exp = i % 3 == 0 ? 0 : static_cast<spL_t>(this->random() >> 24) - (spL_t(1) << 39);
            Owned<TypeParam> x(any_words<TypeParam>(this->random, 2 * p + 6), exp, i % 2 == 0);
            ASSERT_LT(this->error(x.number, p, p + i % 3), ERROR_BOUND) << "p " << p << " round " << i;
        }
    }
}

// Next to a power of the base the approximations are exact or the distance has runs of zeros and ones.
TYPED_TEST(ReciprocalTest, PowersOfTheBaseAndTheirNeighbours) {
    constexpr auto ones = static_cast<TypeParam>(-1);
    for (upL_t p : {1, 2, 3, 5, 9, 10, 11, 24, 40, 200}) {
        for (upL_t length = 2; length < 2 * p + 6; length++) {
            std::vector<TypeParam> above(length), below(length, ones), zero_inside(length, ones);
            above.front() = above.back() = 1;
            zero_inside[length / 2] = 0;
            for (auto& words : {above, below, zero_inside}) {
                Owned<TypeParam> x(words, -3);
                ASSERT_LT(this->error(x.number, p, p), ERROR_BOUND) << "p " << p << " length " << length;
            }
        }
        Owned<TypeParam> power({1}, 77);
        EXPECT_EQ(this->error(power.number, p, p), 0);
    }
}

// The product is 1 - (1 - 2^-W k) 2^(-W j) for a whole number of words j: behind the ones stands a zero word.
TYPED_TEST(ReciprocalTest, ZeroWordBehindTheOnesOfAnUnderEstimate) {
    const Reciprocal_BigFloatR_E<TypeParam> plan(9, 1);
    for (upL_t j = 1; j < 9; j++) {
        // x = 1 + 2^(-W j) - 2^(-W (j + 1)): to j words its reciprocal is just below one.
        std::vector<TypeParam> words(j + 2, 0);
        words.back() = 1;
        words[0] = static_cast<TypeParam>(-1);
        Owned<TypeParam> x(words, -static_cast<spL_t>(j) - 1);
        for (upL_t p = 1; p <= 9; p++) {
            Bench<TypeParam> bench(plan, 1);
            const std::size_t before = allocation_count();
            plan.run(bench.ctx, bench.T, x.number, p, bench.words, bench.word_count);
            EXPECT_EQ(allocation_count(), before);
            EXPECT_LT(relative_error<TypeParam>(mantissa(bench.T) * mantissa(x.number),
                                                W<TypeParam> * (bench.T.exp + x.number.exp), 1, p),
                      ERROR_BOUND);
        }
    }
}

TYPED_TEST(ReciprocalTest, PiecesDoNotChangeTheResult) {
    const upL_t p = 3000;
    Owned<TypeParam> x(shaped_words<TypeParam>(Shape::random, p, this->random), 5);
    const Reciprocal_BigFloatR<TypeParam> plan(p, 7);
    Bench<TypeParam> one(plan, 1);
    this->run(plan, one, x.number, p);
    SpawnParallelizer threads(4);
    for (upL_t tds = 2; tds <= 7; tds++) {
        Bench<TypeParam> bench(plan, tds, threads);
        this->run(plan, bench, x.number, p);
        EXPECT_EQ(mantissa(bench.T), mantissa(one.T)) << "tds " << tds;
        EXPECT_EQ(bench.T.exp, one.T.exp);
    }
}

TYPED_TEST(ReciprocalTest, ReportsItsSteps) {
    Owned<TypeParam> x({3}, 0);
    const Reciprocal_BigFloatR<TypeParam> plan(10, 1);
    Bench<TypeParam> bench(plan, 1);
    this->run(plan, bench, x.number, 10);
    EXPECT_TRUE(bench.status.tags == " 0M  O1M " || bench.status.tags == " 0M  U1M ") << bench.status.tags;
}

TYPED_TEST(ReciprocalTest, WordsFromTheFrontOfTheBytes) {
    const upL_t p = 50;
    const Reciprocal_BigFloatR<TypeParam> plan(p, 1);
    Bench<TypeParam> bench(plan.output_words, 0,
                           align_bytes(plan.word_scratch * sizeof(TypeParam)) + plan.byte_scratch, 1);
    Owned<TypeParam> x({7}, 0);
    plan.run(bench.ctx, bench.status, bench.T, x.number, p);
    EXPECT_LT(relative_error<TypeParam>(mantissa(bench.T) * 7, W<TypeParam> * bench.T.exp, 1, p),
              ERROR_BOUND);
}

TYPED_TEST(ReciprocalTest, Refusals) {
    const Reciprocal_BigFloatR<TypeParam> plan(40, 2);
    Owned<TypeParam> x({3}, 0), zero({0}, 0);
    Bench<TypeParam> bench(plan, 2);
    EXPECT_THROW(this->run(plan, bench, zero.number, 40), ArithmeticException);
    EXPECT_THROW(this->run(plan, bench, x.number, 41), InvalidParametersException);
    bench.ctx.tds = 3;
    EXPECT_THROW(this->run(plan, bench, x.number, 40), InvalidParametersException);
    bench.ctx.tds = 2;
    bench.word_count = 30;
    EXPECT_THROW(this->run(plan, bench, x.number, 40), BufferTooSmallException);
    bench.word_count = plan.word_scratch;
    bench.ctx.scratch_bytes = 128;
    EXPECT_THROW(this->run(plan, bench, x.number, 40), BufferTooSmallException);
    bench.ctx.scratch_bytes = plan.byte_scratch;
    bench.T.capacity = 42;
    EXPECT_THROW(this->run(plan, bench, x.number, 40), BufferTooSmallException);
}

// A bit that flips in R between the levels shows in the product's words above the error that R may have.
TYPED_TEST(ReciprocalTest, NoticesAFlippedBit) {
    const upL_t p = 400;
    Owned<TypeParam> x(shaped_words<TypeParam>(Shape::random, p + 2, this->random), 0);
    const Reciprocal_BigFloatR<TypeParam> plan(p, 1);
    int levels = 0;
    {
        Bench<TypeParam> bench(plan, 1);
        bench.status.at_step = [&](const std::string& tag) { levels += tag == " 0M "; };
        this->run(plan, bench, x.number, p);
    }
    ASSERT_GT(levels, 3);
    for (upL_t word = 20; word < p / 2 - 5; word += 17) {
        Bench<TypeParam> bench(plan, 1);
        int level = 0;
        bench.status.at_step = [&](const std::string& tag) {
            if (tag == " 0M " && ++level == levels) bench.words[word] ^= TypeParam(1) << word % W<TypeParam>;
        };
        EXPECT_THROW(this->run(plan, bench, x.number, p), AlgorithmFailedException) << "word " << word;
    }
}

}  // namespace
}  // namespace lumo::testing
