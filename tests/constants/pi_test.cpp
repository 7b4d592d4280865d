#include "velmora/constants/plans/pi_series.h"

#include "lumo/foundation/errors/exceptions.h"
#include "series_runs.h"
#include "value_run.h"
#include "velmora/constants/series/series_pi.h"

namespace velmora::testing {
namespace {

template <typename T>
class Pi : public ::testing::Test {};
TYPED_TEST_SUITE(Pi, WordTypes);

template <typename wtype>
void expect_all_forms(upL_t p) {
    for (const int power : {1, -1}) {
        const Exact exact(lumo::WordTraits<wtype>::bits * (p + 8), [&](mpfr_t x) {
            mpfr_const_pi(x, MPFR_RNDN);
            mpfr_pow_si(x, x, power, MPFR_RNDN);
        });
        for (const PiSeries series : {PiSeries::chudnovsky, PiSeries::ramanujan}) {
            for (const bool reduced : {false, true}) {
                const upL_t tds = reduced ? 2 : 1;
                const Pi_Series_BigFloatR<wtype> plan(series, power, p, tds, reduced);
                EXPECT_TRUE(ValueRun<wtype>(plan, tds).equals(exact, p))
                    << p << " power " << power << " series " << static_cast<int>(series) << " reduced "
                    << reduced;
            }
        }
    }
}

TYPED_TEST(Pi, AllFormsAtAllPrecisions) {
    for (const upL_t p : PRECISIONS) expect_all_forms<TypeParam>(p);
    expect_all_forms<TypeParam>(20000);
}

/// Far out, where 545140134 k no longer fits into a word: the published formulas in GMP integers.
TYPED_TEST(Pi, TermsOfAnyIndex) {
    const SeriesPiChudnovsky<TypeParam> chudnovsky;
    const SeriesPiRamanujan<TypeParam> ramanujan;
    for (const upL_t k : {upL_t(1), upL_t(1) << 31, upL_t(16919268023), upL_t(1) << 35, upL_t(1) << 46}) {
        SCOPED_TRACE(k);
        const mpz_class n(k), cube = n * n * n;
        const mpz_class R_chudnovsky = -(2 * n - 1) * (6 * n - 5) * (6 * n - 1);
        const mpz_class R_ramanujan = (2 * n - 1) * (4 * n - 3) * (4 * n - 1);
        const auto run = [&](const auto& series, const lumo::testing::Exact& expected) {
            const lumo::testing::BlockRun<TypeParam> leaf(series, {k, k + 1}, 1, 0, true,
                                                          lumo::serial_parallelizer());
            EXPECT_TRUE(leaf.gives(expected));
            const auto term = lumo::testing::exact_sum(series, k, k + 1);
            EXPECT_EQ(term.P, expected.P);
            EXPECT_EQ(term.Q, expected.Q);
            EXPECT_EQ(term.R, expected.R);
        };
        run(chudnovsky,
            {R_chudnovsky * (545140134 * n + 13591409), cube * mpz_class("10939058860032000"), R_chudnovsky});
        run(ramanujan, {R_ramanujan * (26390 * n + 1103), cube * mpz_class("3073907232"), R_ramanujan});
    }
}

TEST(PiThreads, WordsDoNotDependOnTheDecomposition) {
    const auto plan = [](upL_t tds) {
        return Pi_Series_BigFloatR<std::uint64_t>(PiSeries::chudnovsky, 1, 30000, tds, false);
    };
    const ValueRun<std::uint64_t> expected(plan(1));
    for (const upL_t tds : {2, 3, 16, 100}) {
        EXPECT_TRUE(ValueRun<std::uint64_t>(plan(tds), tds).has_words_of(expected)) << tds;
    }
}

/// So long that one task takes common factors out of its ranges, and four do not.
TEST(PiThreads, CommonFactorsChangeNoWord) {
    constexpr upL_t p = 110000;
    const auto plan = [&](PiSeries series, upL_t tds) {
        return Pi_Series_BigFloatR<std::uint64_t>(series, 1, p, tds, false);
    };
    for (const PiSeries series : {PiSeries::chudnovsky, PiSeries::ramanujan}) {
        const ValueRun<std::uint64_t> expected(plan(series, 4), 4);
        EXPECT_TRUE(ValueRun<std::uint64_t>(plan(series, 1), 1).has_words_of(expected));
    }
}

TEST(PiFaults, AFlippedBitInAnyPartEndsTheComputation) {
    const Pi_Series_BigFloatR<std::uint64_t> plan(PiSeries::chudnovsky, 1, 3000, 1, false);
    expect_faults_are_caught([&](auto* fault) { ValueRun<std::uint64_t>(plan, 1, fault); });
}

TEST(PiPlan, RefusesOtherPowers) {
    EXPECT_THROW(Pi_Series_BigFloatR<std::uint64_t>(PiSeries::chudnovsky, 2, 10, 1, false),
                 lumo::InvalidParametersException);
}

}  // namespace
}  // namespace velmora::testing
