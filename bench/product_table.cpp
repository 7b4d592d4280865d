/// Prints one table of products: size, algorithm, nanoseconds per 64-bit word of the product with one thread
/// and with all, and the ratio to mpn_mul_n in the same run. `product_table [largest operand bits]`.
#include <gmp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "lumo/foundation/memory/allocators/mmap_allocator.h"
#include "lumo/foundation/memory/large_buffer.h"
#include "lumo/foundation/parallel/logical_cores.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/multiply.h"

namespace {

using lumo::upL_t;
/// Median seconds of one call, over calls that fill a fifth of a second.
template <typename F>
double seconds(F&& f) {
    using Clock = std::chrono::steady_clock;
    const auto measure = [&](unsigned calls) {
        const auto start = Clock::now();
        for (unsigned i = 0; i < calls; ++i) f();
        return std::chrono::duration<double>(Clock::now() - start).count() / calls;
    };
    measure(1);
    const double once = measure(1);
    const auto calls = static_cast<unsigned>(std::clamp(0.03 / once, 1.0, 1e6));
    std::vector<double> samples;
    for (int i = 0; i < 7; ++i) samples.push_back(measure(calls));
    std::nth_element(samples.begin(), samples.begin() + 3, samples.end());
    return samples[3];
}

void row(upL_t operand_bits, upL_t threads) {
    const upL_t L = operand_bits / 64;
    std::mt19937_64 random(operand_bits);
    const upL_t scratch_bytes = lumo::Multiply::max_buffer_size<std::uint64_t>(2 * L, threads);
    // One block from the allocator of a session, for both libraries.
    const lumo::LargeBuffer memory(lumo::MmapAllocator(), 4 * lumo::align_bytes(8 * L) + scratch_bytes);
    lumo::AlignedBufferC buffer = memory.buffer();
    auto* const a = buffer.spawn_words<std::uint64_t>(L);
    auto* const b = buffer.spawn_words<std::uint64_t>(L);
    auto* const t = buffer.spawn_words<std::uint64_t>(2 * L);
    std::generate_n(a, L, std::ref(random));
    std::generate_n(b, L, std::ref(random));
    const double gmp = seconds([&] { mpn_mul_n(t, a, b, static_cast<mp_size_t>(L)); });
    lumo::Multiply::ensure_tables(128 * L);
    double own[2];
    for (const int all : {0, 1}) {
        const upL_t tds = all ? threads : 1;
        const lumo::MultiplyContext ctx{tds,          &lumo::process_parallelizer(), 0, 0, buffer.data(),
                                        buffer.size()};
        own[all] = seconds([&] { lumo::Multiply::mul(ctx, t, a, L, b, L); });
    }
    const double words = 2.0 * static_cast<double>(L) * 1e-9;
    std::printf("%12llu  %-4s %9.2f %9.2f %9.2f   %7.2f %7.2f\n", static_cast<unsigned long long>(128 * L),
                lumo::Multiply::get_algorithm<std::uint64_t>(2 * L).tag, gmp / words, own[0] / words,
                own[1] / words, gmp / own[0], gmp / own[1]);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const upL_t largest = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : upL_t(1) << 26;
    const upL_t threads = lumo::logical_core_count();
    std::printf("ns per 64-bit word of the product; %llu threads\n",
                static_cast<unsigned long long>(threads));
    std::printf("%12s  %-4s %9s %9s %9s   %7s %7s\n", "product bits", "", "mpn_mul_n", "1 thread", "threads",
                "ratio 1", "ratio n");
    for (const upL_t bits : {512, 1024, 1536, 2048, 2496, 4096, 16384, 65536, 262144, 700000})
        if (bits <= largest) row(bits / 64 * 64, threads);
    for (upL_t bits = upL_t(1) << 20; bits <= largest; bits *= 4) row(bits, threads);
}
