#include "lumo/functions/newton_step.h"

#include "failures.h"
#include "held_numbers.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class NewtonStepTest : public WordTest<wtype> {};
TYPED_TEST_SUITE(NewtonStepTest, WordTypes);

// The compared word is the top one of two. That of the product stands `step` below the target's, modulo the
// base, while both are next to the border between the two values.
TYPED_TEST(NewtonStepTest, ResidualsOfWordsThatDifferByOneAtMost) {
    constexpr auto most = static_cast<TypeParam>(-1);
    constexpr spL_t cut = -5;
    for (const TypeParam B : {TypeParam(0), TypeParam(1), TypeParam(6), most, TypeParam(most - 1)}) {
        for (const int step : {-3, -2, -1, 0, 1, 2, 3}) {
            for (const bool positive : {true, false}) {
                const auto A = static_cast<TypeParam>(B - static_cast<TypeParam>(step));
                // The closest numbers with these top words.
                const HeldFloat<TypeParam> target({step < 0 ? TypeParam(most - 1) : TypeParam(3), B}, cut - 2,
                                                  positive);
                const HeldFloat<TypeParam> product({step > 0 ? most : TypeParam(0), A}, cut - 2, positive);
                HeldFloat<TypeParam> r(8);
                const auto run = [&] {
                    NewtonStep<TypeParam>::residual("here", {}, r, 3, target, product, cut, positive);
                };
                SCOPED_TRACE(::testing::Message() << "B " << B << " step " << step << " " << positive);
                const bool two_below_zero = step == 2 && B == 0;
                if ((step < -1 || step > 1) && !two_below_zero) {
                    EXPECT_EQ(refusal(run), "here Convergence Failure:\n    topA = " + std::to_string(A) +
                                                "\n    topB = " + std::to_string(B));
                    continue;
                }
                run();
                mpz_class expected = step == 0 ? 3 : step > 0 ? 4 : -2;
                if (two_below_zero) expected += unit<TypeParam>(1);
                EXPECT_EQ(value_over(r, cut - 4), (positive ? expected : -expected) * unit<TypeParam>(2));
            }
        }
    }
}

// An error may reach the word at 2 - q, not the one above it.
TYPED_TEST(NewtonStepTest, DistancesFromOneAreBounded) {
    constexpr auto most = static_cast<TypeParam>(-1);
    constexpr upL_t q = 5;
    for (const spL_t top : {-3, -2}) {
        const auto error_words = static_cast<upL_t>(1 - top);
        std::vector<TypeParam> above(error_words + 1), below(error_words, most);
        above.front() = above.back() = 1;
        for (const auto& [words, side] : {std::pair(above, Estimate::over), {below, Estimate::under}}) {
            HeldFloat<TypeParam> E(words, top - 1);
            Estimate found = Estimate::exact;
            const std::string message =
                refusal([&] { found = NewtonStep<TypeParam>::distance_from_one("here", E, q); });
            EXPECT_EQ(message.empty(), top == -3) << message;
            EXPECT_EQ(found, message.empty() ? side : Estimate::exact);
            EXPECT_EQ(E.top(), top);
        }
    }
}

}  // namespace
}  // namespace lumo::testing
