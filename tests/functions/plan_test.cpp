#include "laboratory.h"
#include "lumo/functions/division.h"
#include "lumo/functions/inverse_sqrt.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class PlanTest : public WordTest<wtype> {};
TYPED_TEST_SUITE(PlanTest, WordTypes);

// Memory estimates rest on these numbers: half a number in two aligned pieces, and one output.
TYPED_TEST(PlanTest, WordsOfLargePlans) {
    constexpr bool narrow = sizeof(TypeParam) == 4;
    const Reciprocal_BigFloatR<TypeParam> reciprocal(1000, 1);
    EXPECT_EQ(reciprocal.output_words, narrow ? 1067 : 1035);
    EXPECT_EQ(reciprocal.word_scratch, 512 + 512);
    EXPECT_EQ(reciprocal.total(),
              reciprocal.byte_scratch + sizeof(TypeParam) * 1024 + (narrow ? 1088 : 1040));
    const InvsqrtFloat_BigFloatR<TypeParam> root(1000, 1);
    EXPECT_EQ(root.output_words, narrow ? 1068 : 1036);
    EXPECT_EQ(root.word_scratch, 512 + 512);
    const Division_BigFloatR<TypeParam> division(1000, 1);
    EXPECT_EQ(division.p_r, 501);
    EXPECT_EQ(division.Q_words, 512);
    EXPECT_EQ(division.S_words, 512);
    EXPECT_EQ(division.R_words, narrow ? 576 : 544);
    EXPECT_EQ(division.word_scratch, division.R_words + 1024);
    EXPECT_EQ(division.output_words, 1002);
}

// A larger precision, or more pieces, never needs less: one plan serves all smaller runs. (A
// division runs at the precision of its plan alone.)
TYPED_TEST(PlanTest, SizesGrow) {
    for (upL_t tds = 1; tds <= 4; tds++) {
        upL_t last_reciprocal = 0, last_root = 0;
        for (upL_t p = 1; p < 3000; p += 1 + p / 16) {
            const Reciprocal_BigFloatR<TypeParam> reciprocal(p, tds);
            const InvsqrtFloat_BigFloatR<TypeParam> root(p, tds);
            EXPECT_GE(reciprocal.byte_scratch, last_reciprocal) << p;
            EXPECT_GE(root.byte_scratch, last_root) << p;
            EXPECT_GE(Reciprocal_BigFloatR<TypeParam>(p, tds + 1).byte_scratch, reciprocal.byte_scratch);
            last_reciprocal = reciprocal.byte_scratch;
            last_root = root.byte_scratch;
        }
    }
}

}  // namespace
}  // namespace lumo::testing
