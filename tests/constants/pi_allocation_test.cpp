#include <gtest/gtest.h>

#include <vector>

#include "allocation_count.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/words/words.h"
#include "velmora/constants/plans/pi_series.h"

namespace velmora {
namespace {

TEST(PiAllocation, NothingIsAllocatedWhileItRuns) {
    // Products by every algorithm that the tables know. A pool keeps the records of more than 16 tasks of one
    // call on the heap: decompositions beyond that run on the caller, so that only the library is counted.
    const auto threads = lumo::make_pushpool(2);
    const lumo::upL_t p = 40000;
    for (const PiSeries series : {PiSeries::chudnovsky, PiSeries::ramanujan}) {
        for (const bool reduced : {false, true}) {
            for (const lumo::upL_t tds : {1, 2, 7}) {
                const Pi_Series_BigFloatR<std::uint64_t> plan(series, 1, p, tds, reduced);
                std::vector<std::uint64_t> buffer(plan.total_bytes() / 8 + 16);
                lumo::Multiply::ensure_tables(plan.max_product_bits());
                const lumo::MultiplyContext ctx{
                    tds, tds > 2 ? &lumo::serial_parallelizer() : threads.get(), 0,
                    0,   buffer.data() + lumo::bp_prefix(buffer.data()),         plan.total_bytes()};
                lumo::NullStatusNode status;
                const std::size_t before = lumo::testing::large_allocation_count();
                plan.run(ctx, status);
                EXPECT_EQ(lumo::testing::large_allocation_count(), before)
                    << "tds " << tds << " reduced " << reduced;
            }
        }
    }
}

}  // namespace
}  // namespace velmora
