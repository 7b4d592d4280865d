#include "lumo/functions/division.h"

#include "laboratory.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class DivisionTest : public ::testing::Test {
 protected:
    DivisionTest() { prepare_products(); }

    static double error(const BigFloat<wtype>& N, const BigFloat<wtype>& D, upL_t p, upL_t tds = 1) {
        const Division_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, N, D, bench.words, bench.word_count); });
        expect_tidy(bench.T, p);
        return relative_error<wtype>(mantissa(bench.T) * mantissa(D),
                                     W<wtype> * (bench.T.exp + D.exp - N.exp), mantissa(N), p);
    }
    std::mt19937_64 random{34};
};
TYPED_TEST_SUITE(DivisionTest, WordTypes);

TYPED_TEST(DivisionTest, EveryPrecisionAndShape) {
    for (upL_t p = 1; p < 1500; p = p < 45 ? p + 1 : p + 1 + this->random() % p) {
        for (int i = 0; i < (p < 45 ? 60 : 12); i++) {
            const spL_t exp = i % 3 == 0 ? 0 : static_cast<spL_t>(this->random() >> 24) - (spL_t(1) << 39);
            Owned<TypeParam> N(any_words<TypeParam>(this->random, 2 * p + 6), exp, i % 2 == 0);
            Owned<TypeParam> D(any_words<TypeParam>(this->random, 2 * p + 6), -exp / 2, i % 4 < 2);
            ASSERT_LT(this->error(N.number, D.number, p, 1 + i % 7), ERROR_BOUND) << p << " round " << i;
        }
    }
}

// N = 5 2^(W k) against products 4.FFF..: the words that are compared differ by one, far from their ends.
TYPED_TEST(DivisionTest, BorrowThroughTheComparedWord) {
    for (upL_t p : {10, 11, 24, 60}) {
        for (upL_t length = 1; length < p + 4; length++) {
            std::vector<TypeParam> words(length, 0);
            words.front() = 5;
            words.back() = 3;
            for (TypeParam divisor : {3, 7, 9, 10}) {
                Owned<TypeParam> N(words, 0), D({divisor}, 0);
                ASSERT_LT(this->error(N.number, D.number, p), ERROR_BOUND) << p << " length " << length;
            }
        }
    }
}

TYPED_TEST(DivisionTest, ExactQuotients) {
    for (upL_t p = 4; p < 100; p += 3) {
        for (Shape shape : {Shape::random, Shape::ones, Shape::runs}) {
            std::vector<TypeParam> d = shaped_words<TypeParam>(shape, p / 2, this->random);
            d.back() |= 1;
            const mpz_class product = to_mpz(d.data(), d.size()) * 12345;
            std::vector<TypeParam> n(p / 2 + 1);
            mpz_export(n.data(), nullptr, -1, sizeof(TypeParam), 0, 0, product.get_mpz_t());
            Owned<TypeParam> N(n, 0), D(d, 0);
            ASSERT_LT(this->error(N.number, D.number, p), ERROR_BOUND) << p;
        }
    }
}

TYPED_TEST(DivisionTest, ZerosAndRefusals) {
    const Division_BigFloatR<TypeParam> plan(40, 3);
    Bench<TypeParam> bench(plan, 3);
    Owned<TypeParam> one({1}, 0), zero({0}, 0);
    const auto run = [&](const BigFloat<TypeParam>& N, const BigFloat<TypeParam>& D) {
        plan.run(bench.ctx, bench.status, bench.T, N, D, bench.words, bench.word_count);
    };
    run(zero.number, zero.number);
    EXPECT_TRUE(bench.T.is_zero());
    EXPECT_THROW(run(one.number, zero.number), ArithmeticException);
    for (upL_t tds : {2, 4}) {
        bench.ctx.tds = tds;
        EXPECT_THROW(run(one.number, one.number), InvalidParametersException);
    }
    bench.ctx.tds = 3;
    bench.word_count--;
    EXPECT_THROW(run(one.number, one.number), BufferTooSmallException);
    bench.word_count++;
    bench.ctx.scratch_bytes--;
    EXPECT_THROW(run(one.number, one.number), BufferTooSmallException);
}

// Before the last product everything but the image of R stands in plain words: one damaged word of R's
// storage before " 1M " spoils Q and the image alike, and shows in the residual.
TYPED_TEST(DivisionTest, NoticesAFlippedBit) {
    const upL_t p = 400;
    Owned<TypeParam> N(shaped_words<TypeParam>(Shape::random, p, this->random), 0);
    Owned<TypeParam> D(shaped_words<TypeParam>(Shape::random, p, this->random), 0);
    const Division_BigFloatR<TypeParam> plan(p, 1);
    for (upL_t word = 20; word < p / 2 - 5; word += 17) {
        Bench<TypeParam> bench(plan, 1);
        bench.status.at_step = [&](const std::string& tag) {
            if (tag == " 1M ") bench.words[word] ^= TypeParam(1) << word % W<TypeParam>;
        };
        EXPECT_THROW(
            plan.run(bench.ctx, bench.status, bench.T, N.number, D.number, bench.words, bench.word_count),
            AlgorithmFailedException)
            << "word " << word;
    }
}

}  // namespace
}  // namespace lumo::testing
