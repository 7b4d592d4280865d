#include "lumo/series/block_plan.h"

#include <gtest/gtest.h>

#include "velmora/constants/series_pi.h"

namespace lumo {
namespace {

TEST(BlockPlan, BlocksFollowEachOtherAndMeetThePrecisionLeft) {
    const velmora::SeriesPiChudnovsky<std::uint64_t> series;
    for (const upL_t end : {upL_t(2), upL_t(900), upL_t(1001), upL_t(70000), upL_t(7000000000)}) {
        for (const upL_t limit : {upL_t(200), upL_t(100000), upL_t(1) << 40}) {
            if (end > 70000 && limit < 100000) continue;
            SCOPED_TRACE(::testing::Message() << end << " " << limit);
            const auto plan = make_block_plan(series, 1, end, limit);
            upL_t next = 1;
            for (std::size_t i = 0; i < plan.size(); ++i) {
                EXPECT_EQ(plan[i].s, next);
                next = plan[i].e;
                if (plan[i].terms() <= 1 || i + 1 == plan.size()) continue;
                // One term less, and neither the limit nor the precision left would have been reached.
                const DoubleDouble size = series.block_size(plan[i].s, plan[i].e - 1);
                EXPECT_TRUE(words_to_size<std::uint64_t>(limit) > size);
                EXPECT_TRUE(series.remaining(plan[i].e - 1, end) > size);
            }
            EXPECT_EQ(next, end);
        }
    }
}

TEST(BlockPlan, FewTermsAndALimitBeyondTheRangeGiveOneBlock) {
    const velmora::SeriesPiRamanujan<std::uint64_t> series;
    EXPECT_EQ(make_block_plan(series, 1, 1000, 10).size(), 1u);
    EXPECT_EQ(cut(series, 5000, 1, words_to_size<std::uint64_t>(upL_t(1) << 30)), 5000u);
    EXPECT_EQ(equilibrium(series, 2, 1), 2u);
}

TEST(SeriesSplit, HalvesTheSize) {
    const velmora::SeriesPiChudnovsky<std::uint64_t> series;
    for (const auto& [a, b] :
         {std::pair<upL_t, upL_t>{1, 3}, {1, 2000}, {12345, 99999}, {1, upL_t(1) << 50}}) {
        const upL_t m = series.split(a, b);
        ASSERT_GT(m, a);
        ASSERT_LT(m, b);
        const double left = series.block_size(a, m).hi;
        const double right = series.block_size(m, b).hi;
        EXPECT_NEAR(left, right, 200 + 1e-6 * left);
    }
}

}  // namespace
}  // namespace lumo
