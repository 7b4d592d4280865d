#include "lumo/functions/reciprocal.h"

#include "laboratory.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class ReciprocalTest : public WordTest<wtype> {};
TYPED_TEST_SUITE(ReciprocalTest, WordTypes);

// The product is 1 - (1 - 2^-W k) 2^(-W j) for a whole number of words j: behind the ones stands a zero word.
TYPED_TEST(ReciprocalTest, ZeroWordBehindTheOnesOfAnUnderEstimate) {
    const Reciprocal_BigFloatR_E<TypeParam> plan(9, 1);
    for (upL_t j = 1; j < 9; j++) {
        // x = 1 + 2^(-W j) - 2^(-W (j + 1)): to j words its reciprocal is just below one.
        std::vector<TypeParam> words(j + 2, 0);
        words.back() = 1;
        words[0] = static_cast<TypeParam>(-1);
        const HeldFloat<TypeParam> x(words, -static_cast<spL_t>(j) - 1);
        for (upL_t p = 1; p <= 9; p++) {
            Bench<TypeParam> bench(plan, 1);
            bench.quietly([&] { plan.run(bench.ctx, bench.T, x, p, bench.words, bench.word_count); });
            EXPECT_LT(relative_error<TypeParam>(mantissa(bench.T) * mantissa(x),
                                                W<TypeParam> * (bench.T.exp + x.exp), 1, p),
                      ERROR_BOUND);
        }
    }
}

TYPED_TEST(ReciprocalTest, WordsFromTheFrontOfTheBytesAndItsSteps) {
    for (upL_t p : {10, 50}) {
        const Reciprocal_BigFloatR<TypeParam> plan(p, 1);
        Bench<TypeParam> bench(plan.output_words, 0,
                               align_bytes(plan.word_scratch * sizeof(TypeParam)) + plan.byte_scratch, 1);
        const HeldFloat<TypeParam> x({7}, 0);
        plan.run(bench.ctx, bench.status, bench.T, x, p);
        EXPECT_LT(relative_error<TypeParam>(mantissa(bench.T) * 7, W<TypeParam> * bench.T.exp, 1, p),
                  ERROR_BOUND);
        const std::string last = bench.status.tags.substr(bench.status.tags.size() - 9);
        EXPECT_TRUE(last == " 0M  O1M " || last == " 0M  U1M ") << bench.status.tags;
    }
}

}  // namespace
}  // namespace lumo::testing
