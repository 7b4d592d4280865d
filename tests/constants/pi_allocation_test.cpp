#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/words/words.h"
#include "velmora/constants/pi_series.h"

namespace {

std::atomic<bool> counting{false};
std::atomic<std::size_t> large_allocations{0};

/// Texts of status are shorter; any number or transform is longer.
constexpr std::size_t STATUS_TEXT_BYTES = 1024;

void* allocate(std::size_t bytes, std::size_t alignment) {
    if (counting && bytes > STATUS_TEXT_BYTES) ++large_allocations;
    void* block = std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
    if (!block) throw std::bad_alloc();
    return block;
}

}  // namespace

void* operator new(std::size_t bytes) {
    return allocate(bytes, alignof(std::max_align_t));
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
    return allocate(bytes, static_cast<std::size_t>(alignment));
}
// Inlined into a delete expression, free() looks to the compiler like the wrong partner of new.
[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::align_val_t) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}

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
                large_allocations = 0;
                counting = true;
                plan.run(ctx, status);
                counting = false;
                EXPECT_EQ(large_allocations, 0u) << "tds " << tds << " reduced " << reduced;
            }
        }
    }
}

}  // namespace
}  // namespace velmora
