#include "velmora/constants/roots.h"

#include "failures.h"
#include "value_run.h"
#include "velmora/constants/plans/square_root.h"

namespace velmora::testing {
namespace {

template <typename T>
class Roots : public ::testing::Test {};
TYPED_TEST_SUITE(Roots, WordTypes);

TYPED_TEST(Roots, SquareRoots) {
    for (const upL_t n : {upL_t(2), upL_t(3), upL_t(5), upL_t(10), upL_t(99), upL_t(125), upL_t(200),
                          upL_t(0xffffffff), (upL_t(1) << 63) - 25}) {
        if (static_cast<TypeParam>(n) != n) continue;
        for (const upL_t p : PRECISIONS) {
            const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8),
                              [&](mpfr_t x) { mpfr_sqrt_ui(x, n, MPFR_RNDN); });
            for (const upL_t tds : {1, 2}) {
                const ValueRun<TypeParam> run(Sqrt_BigFloatR<TypeParam>(static_cast<TypeParam>(n), p, tds),
                                              tds);
                EXPECT_TRUE(run.equals(exact, p)) << n << " " << p;
            }
        }
    }
}

TYPED_TEST(Roots, GoldenRatio) {
    for (const upL_t p : PRECISIONS) {
        for (const int power : {1, -1}) {
            const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8), [&](mpfr_t x) {
                mpfr_sqrt_ui(x, 5, MPFR_RNDN);
                mpfr_add_si(x, x, power, MPFR_RNDN);
                mpfr_div_2ui(x, x, 1, MPFR_RNDN);
            });
            const ValueRun<TypeParam> run(GoldenRatio_Newton_BigFloatR<TypeParam>(power, p, 1));
            EXPECT_TRUE(run.equals(exact, p)) << p << " " << power;
        }
    }
    EXPECT_THROW(GoldenRatio_Newton_BigFloatR<TypeParam>(0, 10, 1), lumo::InvalidParametersException);
}

TEST(SqrtConstant, TakesWhatIsNoSquareAndFits) {
    const auto constant = make_constant(find_by_command_name("sqrt"));
    const auto refusal = [&](const char* text) {
        return lumo::message_of([&] { constant->set_argument(text); });
    };
    EXPECT_TRUE(constant->takes_argument());
    for (const char* text : {"0", "", "-2", "2x", "2.5", " 2"})
        EXPECT_EQ(refusal(text), "Argument is invalid: " + std::string(text));
    for (const char* text : {"1", "4", "9", "4611686014132420609", "9223372030926249001"})
        EXPECT_EQ(refusal(text), "Argument is a perfect square: " + std::string(text));
    for (const char* text : {"9223372036854775808", "18446744073709551616"})
        EXPECT_EQ(refusal(text), "Argument is too large: " + std::string(text) +
                                     "\nThe limit is 9,223,372,036,854,775,807.");
    EXPECT_EQ(constant->argument(), 2u);
    for (const char* text : {"3", "4294967295", "9223372030926249000", "9223372036854775783"}) {
        EXPECT_EQ(refusal(text), "");
        EXPECT_EQ(constant->name(), "Sqrt(" + std::string(text) + ")");
        EXPECT_EQ(constant->file_name(), "sqrt(" + std::string(text) + ")");
    }
    EXPECT_THROW(make_constant(find_by_key("pi"))->set_argument("3"), lumo::InvalidParametersException);
}

}  // namespace
}  // namespace velmora::testing
