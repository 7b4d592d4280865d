#include "velmora/constants/plans/pi_series.h"

#include <gtest/gtest.h>
#include <mpfr.h>

#include <algorithm>

#include "gmp_words.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/multiply.h"

namespace velmora {
namespace {

using lumo::upL_t;

template <typename wtype>
class PiRun {
 public:
    PiRun(PiSeries series, int power, upL_t p, upL_t tds, bool reduced,
          lumo::BasicParallelizer& parallelizer = lumo::serial_parallelizer(),
          lumo::SeriesObserver<wtype>* observer = nullptr)
        : plan(series, power, p, tds, reduced), buffer(plan.total_bytes() / 8 + 16) {
        std::uint64_t* start = buffer.data() + lumo::bp_prefix(buffer.data());
        lumo::Multiply::ensure_tables(plan.max_product_bits());
        const lumo::MultiplyContext ctx{tds, &parallelizer, 0, 0, start, plan.total_bytes()};
        lumo::NullStatusNode status;
        value = plan.run(ctx, status, observer);
    }
    /// Whether the value is that of `exact` but for two units of its p-th word.
    bool equals(mpfr_t exact, upL_t p) const {
        constexpr unsigned W = lumo::WordTraits<wtype>::bits;
        mpfr_t difference, got;
        mpfr_inits2(static_cast<mpfr_prec_t>(W * (p + 8)), difference, got, nullptr);
        mpfr_set_z_2exp(got, lumo::testing::mantissa(value).get_mpz_t(), value.exp * W, MPFR_RNDN);
        mpfr_sub(difference, got, exact, MPFR_RNDN);
        // The top word of Pi holds two bits only: p words below it are p - 1 words of fraction.
        const bool close =
            mpfr_zero_p(difference) ||
            mpfr_get_exp(difference) <= 2 - static_cast<mpfr_exp_t>(W) * static_cast<mpfr_exp_t>(p - 1);
        mpfr_clears(difference, got, nullptr);
        return close;
    }
    lumo::BigFloat<wtype> value;

 private:
    Pi_Series_BigFloatR<wtype> plan;
    std::vector<std::uint64_t> buffer;
};

class ExactPi {
 public:
    ExactPi(mpfr_prec_t bits, int power) {
        mpfr_init2(value, bits);
        mpfr_const_pi(value, MPFR_RNDN);
        if (power < 0) mpfr_ui_div(value, 1, value, MPFR_RNDN);
    }
    ~ExactPi() { mpfr_clear(value); }
    ExactPi(const ExactPi&) = delete;
    ExactPi& operator=(const ExactPi&) = delete;
    mpfr_t value;
};

template <typename T>
class Pi : public ::testing::Test {};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(Pi, WordTypes);

TYPED_TEST(Pi, AllFormsAtAllPrecisions) {
    lumo::BasicParallelizer& pool = lumo::process_parallelizer();
    for (const upL_t p : {1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 20, 33, 64, 100, 257, 1000, 4000, 20000}) {
        for (const int power : {1, -1}) {
            const ExactPi exact(static_cast<mpfr_prec_t>(lumo::WordTraits<TypeParam>::bits * (p + 8)), power);
            for (const PiSeries series : {PiSeries::chudnovsky, PiSeries::ramanujan}) {
                for (const bool reduced : {false, true}) {
                    const upL_t tds = reduced ? 2 : 1;
                    SCOPED_TRACE(::testing::Message() << "p " << p << " power " << power << " series "
                                                      << static_cast<int>(series) << " reduced " << reduced);
                    const PiRun<TypeParam> run(series, power, p, tds, reduced, pool);
                    EXPECT_TRUE(run.equals(const_cast<ExactPi&>(exact).value, p));
                }
            }
        }
    }
}

TEST(PiThreads, WordsDoNotDependOnTheDecomposition) {
    lumo::BasicParallelizer& pool = lumo::process_parallelizer();
    const upL_t p = 30000;
    const PiRun<std::uint64_t> expected(PiSeries::chudnovsky, 1, p, 1, false);
    for (const upL_t tds : {2, 3, 16, 100}) {
        const PiRun<std::uint64_t> run(PiSeries::chudnovsky, 1, p, tds, false, pool);
        ASSERT_EQ(run.value.L, expected.value.L);
        EXPECT_EQ(run.value.exp, expected.value.exp);
        EXPECT_TRUE(std::equal(run.value.T, run.value.T + run.value.L, expected.value.T)) << tds;
    }
}

/// Flips one bit of one part at one place of the sum.
class BitFlip final : public lumo::SeriesObserver<std::uint64_t> {
 public:
    using Parts = lumo::Parts<std::uint64_t>;
    BitFlip(lumo::ExactFloat<std::uint64_t> Parts::*which, bool in_sum) : part(which), sum(in_sum) {}
    void block_done(const lumo::Region&, Parts& parts) override {
        if (!sum && calls++ == 1) flip(parts);
    }
    void sum_done(const lumo::Region&, Parts& parts) override {
        if (sum && calls++ == 1) flip(parts);
    }

 private:
    void flip(Parts& parts) {
        auto& number = parts.*part;
        number.T[number.L / 3] ^= std::uint64_t(1) << 40;
    }
    lumo::ExactFloat<std::uint64_t> Parts::*part;
    bool sum;
    int calls = 0;
};

TEST(PiFaults, AFlippedBitInAnyPartEndsTheComputation) {
    using Parts = lumo::Parts<std::uint64_t>;
    for (const auto part : {&Parts::P, &Parts::Q, &Parts::R}) {
        BitFlip fault(part, false);
        EXPECT_THROW(PiRun<std::uint64_t>(PiSeries::chudnovsky, 1, 3000, 1, false,
                                          lumo::serial_parallelizer(), &fault),
                     lumo::BSRModularCheckFailedException);
    }
    for (const auto part : {&Parts::P, &Parts::Q}) {
        BitFlip fault(part, true);
        EXPECT_THROW(PiRun<std::uint64_t>(PiSeries::chudnovsky, 1, 3000, 1, false,
                                          lumo::serial_parallelizer(), &fault),
                     lumo::BSRModularCheckFailedException);
    }
}

TEST(PiPlan, RefusesOtherPowers) {
    EXPECT_THROW(Pi_Series_BigFloatR<std::uint64_t>(PiSeries::chudnovsky, 2, 10, 1, false),
                 lumo::InvalidParametersException);
}

}  // namespace
}  // namespace velmora
