#include "velmora/constants/lemniscate.h"

#include "failures.h"
#include "series_runs.h"
#include "value_run.h"
#include "velmora/constants/series/series_arcsinlemn.h"

namespace velmora::testing {
namespace {

/// 2 Pi / AGM(1, sqrt(2)).
void set_lemniscate(mpfr_t x) {
    mpfr_t pi, one;
    mpfr_inits2(mpfr_get_prec(x), pi, one, nullptr);
    mpfr_const_pi(pi, MPFR_RNDN);
    mpfr_mul_2ui(pi, pi, 1, MPFR_RNDN);
    mpfr_set_ui(one, 1, MPFR_RNDN);
    mpfr_sqrt_ui(x, 2, MPFR_RNDN);
    mpfr_agm(x, one, x, MPFR_RNDN);
    mpfr_div(x, pi, x, MPFR_RNDN);
    mpfr_clears(pi, one, nullptr);
}

template <typename T>
class Lemniscate : public ::testing::Test {};
TYPED_TEST_SUITE(Lemniscate, WordTypes);

TYPED_TEST(Lemniscate, Ranges) {
    struct Case {
        std::int64_t x, y;
        const char *P, *Q, *R;
    };
    for (const Case c : {Case{1, 2, "738243", "115015680", "8775"},
                         Case{7, 23, "529870108502914893", "615362654051130613680", "121457295188775"}}) {
        const auto series = make_arcsinlemn_series<TypeParam>(c.x, c.y);
        const lumo::testing::BlockRun<TypeParam> run(*series, {1, 4}, 1, 0, true,
                                                     lumo::serial_parallelizer());
        EXPECT_TRUE(run.gives({mpz_class(c.P), mpz_class(c.Q), mpz_class(c.R)})) << c.P;
    }
    for (const auto& [x, y] : {std::pair(2, 3), {7, 137}, {19, 20}, {60000, 65535}}) {
        const auto series = make_arcsinlemn_series<TypeParam>(x, y);
        const auto expected = lumo::testing::exact_sum(*series, 1, 1300);
        const lumo::testing::BlockRun<TypeParam> run(*series, {1, 1300}, 2, 1, true,
                                                     lumo::process_parallelizer());
        EXPECT_TRUE(run.gives(expected)) << x << "/" << y;
    }
}

TYPED_TEST(Lemniscate, BothSumsAtAllPrecisions) {
    for (const upL_t p : PRECISIONS) {
        const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8), set_lemniscate);
        for (const auto formula : {LemniscateFormula::gauss, LemniscateFormula::sebah}) {
            const upL_t tds = 1 + p % 3;
            const auto plan = Lemniscate_Machin_BigFloatR<TypeParam>(formula, p, tds);
            EXPECT_TRUE(ValueRun<TypeParam>(plan, tds).equals(exact, p)) << p;
        }
    }
}

TYPED_TEST(Lemniscate, MeanAtAllPrecisions) {
    for (const upL_t p : PRECISIONS) {
        for (const int power : {1, -1}) {
            const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8), [&](mpfr_t x) {
                set_lemniscate(x);
                mpfr_pow_si(x, x, power, MPFR_RNDN);
            });
            const upL_t tds = 1 + p % 3;
            const Lemniscate_AGM_BigFloatR<TypeParam> plan(power, p, tds);
            EXPECT_TRUE(ValueRun<TypeParam>(plan, tds).equals(exact, p)) << p << " " << power;
        }
    }
    EXPECT_THROW(Lemniscate_AGM_BigFloatR<TypeParam>(0, 10, 1), lumo::InvalidParametersException);
}

TEST(ArcSinlemn, Refusals) {
    const auto refusal = [](std::int64_t x, std::int64_t y) {
        return lumo::refusal([&] { make_arcsinlemn_series<std::uint64_t>(x, y); });
    };
    EXPECT_EQ(refusal(0, 3), "ArcSinlemn(x/y) Argument for ArcSinlemn is invalid: 0");
    EXPECT_EQ(refusal(3, 3), "ArcSinlemn(x/y) x must be less than y or series won't converge.");
    EXPECT_EQ(refusal(4, -3), "ArcSinlemn(x/y) x must be less than y or series won't converge.");
    EXPECT_EQ(refusal(1, 65536), "ArcSinlemn(x/y) y^4 doesn't fit into a machine word: 65536");
    EXPECT_EQ(refusal(99, 100), "ArcSinlemn(x/y) x/y is too close to 1.0. Series converges too slowly.");
    EXPECT_EQ(refusal(95, 100), "");
}

TEST(LemniscateFaults, AFlippedBitEndsTheComputation) {
    expect_faults_are_caught([](auto* fault) {
        ValueRun<std::uint64_t>(Lemniscate_Machin_BigFloatR<std::uint64_t>(LemniscateFormula::gauss, 2000, 1),
                                1, fault);
    });
    expect_faults_are_caught([](auto* fault) {
        ValueRun<std::uint64_t>(Lemniscate_AGM_BigFloatR<std::uint64_t>(1, 3000, 1), 1, fault);
    });
}

}  // namespace
}  // namespace velmora::testing
