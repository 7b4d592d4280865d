#include "lumo/series/block_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "lumo/series/plan_warning.h"
#include "velmora/constants/series/series_pi.h"

namespace lumo {
namespace {

TEST(BlockPlan, BlocksFollowEachOtherAndMeetThePrecisionLeft) {
    const velmora::SeriesPiChudnovsky<std::uint64_t> series;
    for (const upL_t end : {upL_t(2), upL_t(900), upL_t(1001), upL_t(70000), upL_t(7000000000)}) {
        for (const upL_t limit : {upL_t(200), upL_t(100000), upL_t(1) << 40}) {
            if (end > 70000 && limit <= 100000) continue;
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

TEST(BlockPlan, LongPlansAreReported) {
    const auto printed = [](auto tell, upL_t blocks) { return printed_by([&] { tell(blocks); }); };
    EXPECT_EQ(printed(watch_plan, 9999) + printed(watch_plan, 10001) + printed(check_plan, 9998), "");
    EXPECT_THAT(printed(watch_plan, 10000),
                ::testing::HasSubstr("Performance Warning: PSR plan has exceeded 10000 blocks.\n"));
    EXPECT_THAT(printed(check_plan, 9999),
                ::testing::AllOf(::testing::HasSubstr("PSR plan has reached a size of 9999\n"),
                                 ::testing::HasSubstr("something wrong with its convergence behavior."),
                                 ::testing::HasSubstr("Press ENTER to continue")));
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
