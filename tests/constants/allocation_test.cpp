#include <gtest/gtest.h>

#include "allocation_count.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/multiply.h"
#include "scratch.h"
#include "velmora/constants/e.h"
#include "velmora/constants/plans/brent_mcmillan.h"
#include "velmora/constants/plans/lemniscate_agm.h"
#include "velmora/constants/plans/log_agm_alone.h"
#include "velmora/constants/plans/pi_series.h"

namespace velmora {
namespace {

class PlanAllocation : public ::testing::Test {
 protected:
    template <typename MakePlan, typename... Argument>
    void expect_none(MakePlan make_plan, const Argument&... argument) const {
        for (const lumo::upL_t tds : {1, 2, 7}) {
            const auto plan = make_plan(tds);
            const lumo::testing::Scratch memory(plan.total_bytes());
            lumo::Multiply::ensure_tables(64 * plan.max_product_words());
            const lumo::MultiplyContext ctx =
                memory.context(tds, tds > 2 ? lumo::serial_parallelizer() : *threads);
            lumo::NullStatusNode status;
            const std::size_t before = lumo::testing::large_allocation_count();
            plan.run(ctx, status, argument...);
            EXPECT_EQ(lumo::testing::large_allocation_count(), before) << "tds " << tds;
        }
    }

    // A pool keeps the records of more than 16 tasks of one call on the heap: decompositions beyond that run
    // on the caller, so that only the library is counted.
    const std::unique_ptr<lumo::BasicParallelizer> threads = lumo::make_pushpool(2);
};

TEST_F(PlanAllocation, NothingIsAllocatedWhileItRuns) {
    // Products by every algorithm that the tables know.
    constexpr lumo::upL_t p = 40000;
    for (const PiSeries series : {PiSeries::chudnovsky, PiSeries::ramanujan}) {
        for (const bool reduced : {false, true})
            expect_none([&](lumo::upL_t tds) {
                return Pi_Series_BigFloatR<std::uint64_t>(series, 1, p, tds, reduced);
            });
    }
    expect_none([&](lumo::upL_t tds) { return e_Taylor_BigFloatR<std::uint64_t>(true, 1, p, tds); });
    expect_none([&](lumo::upL_t tds) { return Lemniscate_AGM_BigFloatR<std::uint64_t>(1, p / 4, tds); });
    std::uint64_t word;
    lumo::BigFloat<std::uint64_t> ten(&word, 1);
    ten.set_word(10);
    expect_none([&](lumo::upL_t tds) { return Log_AGM_alone_BigFloatR<std::uint64_t>(p / 4, tds); }, ten);
    expect_none([&](lumo::upL_t tds) {
        return BrentMcMillan_BigFloatR<std::uint64_t>(BrentMcMillanForm::refined, p / 8, tds);
    });
}

}  // namespace
}  // namespace velmora
