#include "lumo/series/sum_progress.h"

#include <gtest/gtest.h>

using namespace lumo;

namespace {

std::string told(const SumProgress& progress, upL_t i, double seconds) {
    std::string text;
    for (const ColorSegment& segment : progress.text(i, std::chrono::duration<double>(seconds)))
        text += segment.text;
    return text;
}

// A quarter of the work lies in the last block, which is the first to be summed.
TEST(SumProgress, TellsWhatIsBehindAndHowLongTheRestTakes) {
    const std::vector<Region> plan = {Region(0, 3000), Region(3000, 4300)};
    const SumProgress progress(plan);
    EXPECT_EQ(told(progress, 1, 100), "Summing: 0 %  block 1 / 2  ");
    EXPECT_EQ(told(progress, 0, 0.9), "Summing: 25 %  block 2 / 2  ");
    EXPECT_TRUE(told(progress, 0, 4000).starts_with("Summing: 25 %, 3:1")) << told(progress, 0, 4000);
    // Too little to tell the rest by.
    const std::vector<Region> long_plan = {Region(0, 100000), Region(100000, 101000)};
    EXPECT_EQ(told(SumProgress(long_plan), 0, 100), "Summing: 0 %  block 2 / 2  ");
}

}  // namespace
