#include "velmora/constants/e.h"

#include "failures.h"
#include "series_runs.h"
#include "value_run.h"
#include "velmora/constants/series/series_e.h"

namespace velmora::testing {
namespace {

template <typename T>
class E : public ::testing::Test {};
TYPED_TEST_SUITE(E, WordTypes);

TYPED_TEST(E, RangesAreExact) {
    for (const bool alternating : {false, true}) {
        const SeriesETaylor<TypeParam> series(alternating);
        struct Case {
            upL_t a, b, tds, levels;
        };
        for (const Case c :
             {Case{1, 2, 1, 0}, Case{1, 33, 1, 0}, Case{2, 300, 2, 0}, Case{1, 2500, 2, 1},
              Case{7, 20000, 3, 2}, Case{(upL_t(1) << 40) - 3, (upL_t(1) << 40) + 1500, 2, 0}}) {
            const auto expected = lumo::testing::exact_sum(series, c.a, c.b);
            const lumo::testing::BlockRun<TypeParam> run(series, {c.a, c.b}, c.tds, c.levels, false,
                                                         lumo::process_parallelizer());
            EXPECT_TRUE(run.gives(expected)) << c.a << " " << c.b;
        }
    }
}

TYPED_TEST(E, AllFormsAtAllPrecisions) {
    for (const upL_t p : PRECISIONS) {
        for (const auto& [alternating, power] : {std::pair(false, 1), {true, 1}, {true, -1}}) {
            const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8), [&, power = power](mpfr_t x) {
                mpfr_set_si(x, power, MPFR_RNDN);
                mpfr_exp(x, x, MPFR_RNDN);
            });
            for (const upL_t tds : {1, 3}) {
                const ValueRun<TypeParam> run(e_Taylor_BigFloatR<TypeParam>(alternating, power, p, tds), tds);
                EXPECT_TRUE(run.equals(exact, p)) << p << " " << power << " " << alternating;
            }
        }
    }
}

TEST(EPower, Refusals) {
    const auto refusal = [](bool alternating, int power) {
        return lumo::failure_of([&] { e_Taylor_BigFloatR<std::uint64_t>(alternating, power, 10, 1); });
    };
    for (const bool alternating : {false, true}) {
        for (const int power : {0, 2, -2})
            EXPECT_EQ(refusal(alternating, power),
                      "InvalidParametersException e_Taylor_BigFloatR(): Power must be 1 or -1.");
    }
    EXPECT_EQ(refusal(false, -1),
              "InvalidParametersException e_Taylor_BigFloatR(): Inversion not supported for non-alternating "
              "series.");
}

TEST(ESeries, TermsReachTheTarget) {
    const SeriesETaylor<std::uint64_t> series(false);
    for (const upL_t words : {1, 7, 1000, 1000000}) {
        const lumo::DoubleDouble size = lumo::words_to_size<std::uint64_t>(words);
        const upL_t n = series.terms_for(size);
        EXPECT_TRUE(series.block_size(1, n + 1) > size);
        EXPECT_FALSE(series.block_size(1, n - 1) > size);
    }
}

TEST(EFaults, AFlippedBitEndsTheComputation) {
    for (const auto part : {&BitFlip::Parts::P, &BitFlip::Parts::Q}) {
        BitFlip fault(part, false, 0);
        EXPECT_THROW(ValueRun<std::uint64_t>(e_Taylor_BigFloatR<std::uint64_t>(true, 1, 5000, 1), 1, &fault),
                     lumo::BSRModularCheckFailedException);
    }
}

}  // namespace
}  // namespace velmora::testing
