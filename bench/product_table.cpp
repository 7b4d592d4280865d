/// Prints one table of products: size, algorithm, nanoseconds per 64-bit word of the product with one thread
/// and with all, mpn_mul_n's time over ours in the same run, and the share of the peak rate of
/// multiplications.
///
///   product_table [largest operand bits] [all]
///
/// The algorithm is that of the table of this build; with `all`, every one that takes the size, the table's
/// own with a star. The share: multiplying vector operations (fused multiply-adds of doubles, or of 52-bit
/// integers) that the transforms need by the butterflies of their row, as counted in peak_rate.h, over the
/// time and over the rate at which this machine made the same kind of operation in registers at the start
/// of the same run, with as many threads. Scalar algorithms and portable kernels have none.
#include <gmp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <random>
#include <string_view>
#include <vector>

#include "lumo/foundation/memory/allocators/mmap_allocator.h"
#include "lumo/foundation/memory/large_buffer.h"
#include "lumo/foundation/parallel/logical_cores.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/algorithm_registry.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/multiply/multiply.h"
#include "peak_rate.h"

namespace {

using lumo::upL_t;
using lumo::bench::Multiplier;
using Algorithm = lumo::BasicAlgorithm<std::uint64_t>;

using Work = std::function<void()>;

/// Seconds of one call on average, over `calls` of them.
double measure(const Work& work, unsigned calls) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    for (unsigned i = 0; i < calls; ++i) work();
    return std::chrono::duration<double>(Clock::now() - start).count() / calls;
}

/// Median seconds of one call of each, over calls that fill a fifth of a second; of three calls if each takes
/// longer. They take turns, so that a machine that changes its speed changes it for all.
std::vector<double> seconds(const std::vector<Work>& works) {
    std::vector<unsigned> calls;
    std::vector<std::vector<double>> samples(works.size());
    for (const Work& work : works) {
        measure(work, 1);
        calls.push_back(static_cast<unsigned>(std::clamp(0.03 / measure(work, 1), 1.0, 1e6)));
    }
    for (int round = 0; round < 7; ++round)
        for (std::size_t i = 0; i < works.size(); ++i)
            if (round < 3 || samples[i].front() < 0.2) samples[i].push_back(measure(works[i], calls[i]));
    std::vector<double> medians;
    for (auto& each : samples) {
        const auto middle = each.begin() + static_cast<long>(each.size() / 2);
        std::nth_element(each.begin(), middle, each.end());
        medians.push_back(*middle);
    }
    return medians;
}

/// Peak rates of one thread and of all, measured when they are first asked for.
double peak(Multiplier kind, upL_t threads) {
    static std::map<std::pair<Multiplier, upL_t>, double> rates;
    const auto [found, fresh] = rates.try_emplace({kind, threads}, 0.0);
    if (fresh) found->second = lumo::bench::peak_rate(kind, threads);
    return found->second;
}

class Table {
 public:
    Table(upL_t all_threads, bool all_algorithms) : threads{1, all_threads}, all(all_algorithms) {
        std::printf("ns per 64-bit word of the product; %llu threads\n",
                    static_cast<unsigned long long>(all_threads));
        for (const char* tag : {"FFT", "VT3"}) {
            const Multiplier kind = lumo::bench::multiplier_of(tag);
            if (kind != Multiplier::none)
                std::printf(
                    "peak of what %s multiplies with: %.2f and %.2f thousand million vectors a second\n", tag,
                    peak(kind, threads[0]) * 1e-9, peak(kind, threads[1]) * 1e-9);
        }
        std::printf("%12s  %-5s %9s %9s %9s   %7s %7s   %7s %7s\n", "product bits", "", "mpn_mul_n",
                    "1 thread", "threads", "ratio 1", "ratio n", "share 1", "share n");
    }

    void size(upL_t operand_bits) {
        const upL_t L = operand_bits / 64;
        std::vector<const Algorithm*> algorithms;
        const Algorithm& own = lumo::Multiply::get_algorithm<std::uint64_t>(2 * L);
        for (const char* tag : {"BKT", "FFT", "VT3", "N64", "VST", "C17"}) {
            const Algorithm* algorithm = lumo::find_algorithm(tag)->basic<std::uint64_t>();
            if (algorithm->max_bits >= 128 * L && (all || algorithm == &own)) algorithms.push_back(algorithm);
        }
        upL_t scratch_bytes = 0;
        for (const Algorithm* algorithm : algorithms) {
            lumo::BufferSizes sizes;
            scratch_bytes = std::max(scratch_bytes, algorithm->max_buffer_sizes(sizes, 2 * L, threads[1]));
        }
        // One block from the allocator of a session, for both libraries.
        const lumo::LargeBuffer memory(lumo::MmapAllocator(), 4 * lumo::align_bytes(8 * L) + scratch_bytes);
        lumo::AlignedBufferC buffer = memory.buffer();
        Product product{L, buffer.spawn_words<std::uint64_t>(L), buffer.spawn_words<std::uint64_t>(L),
                        buffer.spawn_words<std::uint64_t>(2 * L), buffer};
        std::mt19937_64 random(operand_bits);
        std::generate_n(product.a, L, std::ref(random));
        std::generate_n(product.b, L, std::ref(random));
        for (const Algorithm* algorithm : algorithms)
            row(*algorithm, product, all && algorithm == &own ? "*" : "");
    }

 private:
    struct Product {
        upL_t L;  ///< of each operand
        std::uint64_t *a, *b, *t;
        lumo::AlignedBufferC scratch;
    };

    void row(const Algorithm& algorithm, const Product& x, const char* mark) {
        algorithm.ensure_tables(2 * x.L);
        const Multiplier kind = lumo::bench::multiplier_of(algorithm.tag);
        const auto multiply = [&](upL_t tds) {
            const lumo::MultiplyContext ctx =
                lumo::MultiplyContext{tds, &lumo::process_parallelizer()}.with_scratch(x.scratch);
            algorithm.mul(ctx, x.t, x.a, x.L, x.b, x.L);
        };
        const std::vector<double> times =
            seconds({[&] { mpn_mul_n(x.t, x.a, x.b, static_cast<mp_size_t>(x.L)); },
                     [&] { multiply(threads[0]); }, [&] { multiply(threads[1]); }});
        const double gmp = times[0], own[2] = {times[1], times[2]};
        const double words = 2.0 * static_cast<double>(x.L) * 1e-9;
        std::printf("%12llu  %-3s%-2s %9.2f %9.2f %9.2f   %7.2f %7.2f",
                    static_cast<unsigned long long>(128 * x.L), algorithm.tag, mark, gmp / words,
                    own[0] / words, own[1] / words, gmp / own[0], gmp / own[1]);
        if (kind != Multiplier::none) {
            const double needed = lumo::bench::operations(algorithm.tag, 128 * x.L);
            for (const int i : {0, 1})
                std::printf("   %5.0f %%", 100 * needed / own[i] / peak(kind, threads[i]));
        }
        std::printf("\n");
        std::fflush(stdout);
    }

    const upL_t threads[2];
    const bool all;
};

}  // namespace

int main(int argc, char** argv) {
    if (const std::string& problem = lumo::chosen_kernels().problem; !problem.empty())
        std::fprintf(stderr, "%s\n", problem.c_str());
    const upL_t largest = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : upL_t(1) << 26;
    Table table(lumo::logical_core_count(), argc > 2 && std::string_view(argv[2]) == "all");
    for (const upL_t bits : {512, 1024, 1536, 2048, 2496, 4096, 16384, 65536, 262144, 700000})
        if (bits <= largest) table.size(bits / 64 * 64);
    for (upL_t bits = upL_t(1) << 20; bits <= largest; bits *= 4) table.size(bits);
}
