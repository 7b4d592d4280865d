// "VT3" by kernel set, length and threads. Counter "ns/word": nanoseconds per 64-bit word of the product.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>

#include "lumo/foundation/memory/allocators/mmap_allocator.h"
#include "lumo/foundation/memory/large_buffer.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/ntt/ntt_algorithm.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "lumo/multiply/ntt/vt3/vt3_transform.h"

using namespace lumo;

namespace {

void product(benchmark::State& state, const kernels::Vt3Kernels* set, bool square) {
    select_vt3_kernels(set);
    const upL_t words = upL_t(1) << (state.range(0) - 6), half = words / 2;
    const upL_t tds = upL_t(state.range(1));
    const NttAlgorithm<std::uint64_t, Vt3Transform> vt3;
    BufferSizes sizes;
    PushPoolParallelizer pool(tds, false, 1);
    MultiplyContext ctx;
    ctx.tds = tds;
    if (tds > 1) ctx.parallelizer = &pool;
    ctx.scratch_bytes = vt3.max_buffer_sizes(sizes, words, tds);
    // One block from the allocator of a session: large pages where the system gives them.
    const LargeBuffer memory(MmapAllocator(), 4 * align_bytes(8 * half) + ctx.scratch_bytes);
    AlignedBufferC buffer = memory.buffer();
    auto* a = buffer.spawn_words<std::uint64_t>(half);
    auto* b = buffer.spawn_words<std::uint64_t>(half);
    auto* t = buffer.spawn_words<std::uint64_t>(words);
    ctx.scratch = buffer.spawn(ctx.scratch_bytes);
    std::mt19937_64 random(1);
    std::generate_n(a, words, std::ref(random));
    auto run = [&] {
        if (square)
            vt3.sqr(ctx, t, a, half);
        else
            vt3.mul(ctx, t, a, half, b, half);
        benchmark::ClobberMemory();
    };
    run();  // fresh pages cost more than the product
    for (auto _ : state) run();
    state.counters["ns/word"] =
        benchmark::Counter(static_cast<double>(words),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    select_vt3_kernels(nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    for (const auto* set : {&kernels::vt3_kernels_ifma, &kernels::vt3_kernels_avx512,
                            &kernels::vt3_kernels_avx2, &kernels::vt3_kernels_portable}) {
        if (!select_vt3_kernels(set)) continue;
        for (const bool square : {false, true}) {
            const std::string name = std::string(square ? "sqr/" : "mul/") + set->name;
            benchmark::RegisterBenchmark(name.c_str(), product, set, square)
                ->ArgsProduct({{20, 22, 24, 26, 28, 30}, {1, 2}})
                ->UseRealTime();
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
