#include <gtest/gtest.h>

#include "failures.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/series/modular_check.h"
#include "series_runs.h"
#include "velmora/constants/series/series_pi.h"

namespace lumo {
namespace {

using testing::BlockRun;
using testing::Exact;
using testing::exact_sum;
using testing::integer_value;

template <typename T>
class BinarySplitting : public ::testing::Test {};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(BinarySplitting, WordTypes);

TYPED_TEST(BinarySplitting, PublishedValues) {
    const velmora::SeriesPiChudnovsky<TypeParam> chudnovsky;
    const velmora::SeriesPiRamanujan<TypeParam> ramanujan;
    const BlockRun<TypeParam> c(chudnovsky, Region(1, 4), 1, 0, true, serial_parallelizer());
    EXPECT_EQ(abs(integer_value<TypeParam>(c.parts.P)),
              mpz_class("72208257316346012928456348682766762497244025"));
    EXPECT_EQ(integer_value<TypeParam>(c.parts.Q),
              mpz_class("282744150338349327484720295874090277797888000000000"));
    EXPECT_EQ(abs(integer_value<TypeParam>(c.parts.R)), 1276275);
    EXPECT_FALSE(c.parts.P.positive);
    const BlockRun<TypeParam> r(ramanujan, Region(1, 4), 1, 0, true, serial_parallelizer());
    EXPECT_EQ(integer_value<TypeParam>(r.parts.P), mpz_class("168336640228755886016259141"));
    EXPECT_EQ(integer_value<TypeParam>(r.parts.Q), mpz_class("6273732846901130842023559692288"));
    EXPECT_EQ(integer_value<TypeParam>(r.parts.R), 155925);
}

TYPED_TEST(BinarySplitting, EveryCutGivesTheExactParts) {
    const velmora::SeriesPiChudnovsky<TypeParam> series;
    BasicParallelizer& pool = process_parallelizer();
    struct Case {
        upL_t a, b, tds, levels;
    };
    // Leaves alone, splits by the middle and by cost, forks, blocks; indices whose factors take two words.
    for (const Case c :
         {Case{1, 2, 1, 0}, Case{1, 8, 1, 0}, Case{5, 21, 2, 1}, Case{1, 101, 1, 0}, Case{7, 1006, 2, 0},
          Case{1, 1001, 2, 0}, Case{100, 3100, 3, 2}, Case{1, 5000, 7, 1}, Case{1, 4000, 16, 3},
          Case{715827880, 715827890, 2, 0}, Case{3000000000, 3000001200, 2, 1}}) {
        SCOPED_TRACE(::testing::Message() << c.a << " " << c.b << " tds " << c.tds << " levels " << c.levels);
        const Exact expected = exact_sum(series, c.a, c.b);
        for (const bool need_R : {true, false}) {
            const BlockRun<TypeParam> run(series, Region(c.a, c.b), c.tds, c.levels, need_R, pool);
            EXPECT_TRUE(run.gives(expected));
        }
    }
}

TYPED_TEST(BinarySplitting, SizesAreUpperBoundsAndClose) {
    const velmora::SeriesPiChudnovsky<TypeParam> series;
    for (const auto& [a, b] : {std::pair<upL_t, upL_t>{1, 2}, {1, 50}, {40, 1000}, {5000000, 5000900}}) {
        const Exact exact = exact_sum(series, a, b);
        const auto words = [](const mpz_class& x) {
            return (mpz_sizeinbase(x.get_mpz_t(), 2) + WordTraits<TypeParam>::bits - 1) /
                   WordTraits<TypeParam>::bits;
        };
        const upL_t largest = std::max({words(exact.P), words(exact.Q), words(exact.R)});
        EXPECT_LE(largest, series.result_words(a, b));
        EXPECT_GE(largest + 8, series.result_words(a, b));
    }
}

TEST(ModularCheck, NamesTheRangeAndTheHashesThatDisagree) {
    const velmora::SeriesPiRamanujan<std::uint64_t> series;
    BlockRun<std::uint64_t> run(series, Region(1, 1500), 1, 0, true, serial_parallelizer());
    const auto check = [&](BSRStep step) {
        lmb_Verify_BSR<std::uint64_t>(1, 1500, {&run.parts.P, &run.parts.Q, &run.parts.R}, {}, step);
    };
    EXPECT_NO_THROW(check(BSRStep::range));
    for (ExactFloat<std::uint64_t>* part : {&run.parts.P, &run.parts.Q, &run.parts.R}) {
        part->T[part->L / 2] ^= std::uint64_t(1) << 17;
        EXPECT_EQ(refusal([&] { check(BSRStep::range); }),
                  "lmb_Verify_BSR() Modular Redundancy Check Failed: 1 : 1500");
        EXPECT_EQ(message_of([&] { check(BSRStep::merge); }), "BSR Merge Failure: 1 : 1500");
        try {
            check(BSRStep::range);
        } catch (const BSRModularCheckFailedException& failure) {
            EXPECT_EQ(failure.hashes.size(), 1u);
        }
        part->T[part->L / 2] ^= std::uint64_t(1) << 17;
    }
}

TEST(Region, RefusesAnEmptyRange) {
    EXPECT_THROW(Region(5, 5), InvalidParametersException);
}

}  // namespace
}  // namespace lumo
