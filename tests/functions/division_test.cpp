#include "lumo/functions/division.h"

#include "laboratory.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class DivisionTest : public WordTest<wtype> {
 protected:
    static double error(const BigFloat<wtype>& N, const BigFloat<wtype>& D, upL_t p, upL_t tds = 1) {
        const Division_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, N, D, bench.words, bench.word_count); });
        expect_tidy(bench.T, p);
        return relative_error<wtype>(mantissa(bench.T) * mantissa(D),
                                     testing::W<wtype> * (bench.T.exp + D.exp - N.exp), mantissa(N), p);
    }
};
TYPED_TEST_SUITE(DivisionTest, WordTypes);

TYPED_TEST(DivisionTest, EveryPrecisionAndShape) {
    for (upL_t p = 1; p < 1500; p = p < 45 ? p + 1 : p + 1 + this->random() % p) {
        for (int i = 0; i < (p < 45 ? 60 : 12); i++) {
            const spL_t exp = i % 3 == 0 ? 0 : static_cast<spL_t>(this->random() >> 24) - (spL_t(1) << 39);
            const HeldFloat<TypeParam> N(any_words<TypeParam>(this->random, 2 * p + 6), exp, i % 2 == 0),
                D(any_words<TypeParam>(this->random, 2 * p + 6), -exp / 2, i % 4 < 2);
            ASSERT_LT(this->error(N, D, p, 1 + i % 7), ERROR_BOUND) << p << " round " << i;
        }
    }
}

// N = 5 2^(W k) against products 4.FFF..: the words that are compared differ by one, far from their ends.
TYPED_TEST(DivisionTest, BorrowThroughTheComparedWordAndExactQuotients) {
    for (upL_t p : {10, 11, 24, 60}) {
        for (upL_t length = 1; length < p + 4; length++) {
            std::vector<TypeParam> words(length, 0);
            words.front() = 5;
            words.back() = 3;
            const HeldFloat<TypeParam> N(words, 0);
            for (TypeParam divisor : {3, 7, 9, 10})
                ASSERT_LT(this->error(N, HeldFloat<TypeParam>({divisor}, 0), p), ERROR_BOUND)
                    << p << " length " << length;
        }
        for (Shape shape : {Shape::random, Shape::ones, Shape::runs}) {
            std::vector<TypeParam> d = shaped_words<TypeParam>(shape, p / 2, this->random);
            d.back() |= 1;
            const HeldFloat<TypeParam> D(d, 0);
            const HeldFloat<TypeParam> N(to_words<TypeParam>(mantissa(D) * 12345, p / 2 + 1), 0);
            ASSERT_LT(this->error(N, D, p), ERROR_BOUND) << p;
        }
    }
}

TYPED_TEST(DivisionTest, ZerosAndRefusals) {
    const Division_BigFloatR<TypeParam> plan(40, 3);
    Bench<TypeParam> bench(plan, 3);
    const HeldFloat<TypeParam> one({1}, 0), zero({0}, 0);
    const auto run = [&](const BigFloat<TypeParam>& N, const BigFloat<TypeParam>& D) {
        plan.run(bench.ctx, bench.status, bench.T, N, D, bench.words, bench.word_count);
    };
    run(zero, zero);
    EXPECT_TRUE(bench.T.is_zero());
    EXPECT_THROW(run(one, zero), ArithmeticException);
    for (upL_t tds : {2, 4}) {
        bench.ctx.tds = tds;
        EXPECT_EQ(refusal([&] { run(one, one); }), "Division_BigFloatR<wtype>::run() Mismatching tds.");
    }
    bench.ctx.tds = 3;
    bench.word_count--;
    EXPECT_THROW(run(one, one), BufferTooSmallException);
    bench.word_count++;
    bench.ctx.scratch_bytes--;
    EXPECT_THROW(run(one, one), BufferTooSmallException);
}

// Before the last product everything but the image of R stands in plain words: one damaged word of R's
// storage before " 1M " spoils Q and the image alike, and shows in the residual.
TYPED_TEST(DivisionTest, NoticesAFlippedBit) {
    const upL_t p = 400;
    const HeldFloat<TypeParam> N(shaped_words<TypeParam>(Shape::random, p, this->random), 0),
        D(shaped_words<TypeParam>(Shape::random, p, this->random), 0);
    const Division_BigFloatR<TypeParam> plan(p, 1);
    for (upL_t word = 20; word < p / 2 - 5; word += 17) {
        Bench<TypeParam> bench(plan, 1);
        bench.status.at_step = [&](const std::string& tag) {
            if (tag == " 1M ") bench.words[word] ^= TypeParam(1) << word % this->W;
        };
        EXPECT_THROW(plan.run(bench.ctx, bench.status, bench.T, N, D, bench.words, bench.word_count),
                     AlgorithmFailedException)
            << "word " << word;
    }
}

}  // namespace
}  // namespace lumo::testing
