// Products by the floating-point FFT, one row of the size table each, beside mpn_mul_n of the same length.
// The counter "word" is the time for each 64-bit word of the product.
//
//   fft_bench                    times all rows; --benchmark_filter=fft/1\.16 picks some
//   fft_bench errors             prints the largest distance of a coefficient from an integer for every row
#include <benchmark/benchmark.h>
#include <gmp.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/fft/fft_descriptor.h"
#include "lumo/multiply/fft/fft_tables.h"
#include "lumo/multiply/kernels/kernel_select.h"

using namespace lumo;

namespace {

using Words = std::vector<std::uint64_t>;
using Descriptor = FftDescriptor<std::uint64_t>;

Words random_words(upL_t n, unsigned seed) {
    std::mt19937_64 random(seed);
    Words a(n);
    for (auto& word : a) word = random();
    return a;
}

std::string name_of(const FftSize& size) {
    return std::to_string(size.m) + "." + std::to_string(size.k) + "." + std::to_string(size.b);
}

struct Free {
    void operator()(void* p) const { std::free(p); }
};

/// Two images and scratch, touched before the clock starts.
struct Memory {
    explicit Memory(const Descriptor& d) {
        const upL_t array = d.array_bytes(), total = 2 * array + d.scratch_bytes();
        block.reset(std::aligned_alloc(4096, (total + 4095) / 4096 * 4096));
        std::memset(block.get(), 0, total);
        auto* bytes = static_cast<char*>(block.get());
        first = bytes;
        second = bytes + array;
        ctx.scratch = bytes + 2 * array;
        ctx.scratch_bytes = d.scratch_bytes();
    }
    std::unique_ptr<void, Free> block;
    void* first;
    void* second;
    MultiplyContext ctx;
};

void per_word(benchmark::State& state, upL_t words) {
    state.counters["word"] = benchmark::Counter(
        double(words), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void product(benchmark::State& state, FftSize size, upL_t tds, bool square) {
    ensure_fft_tables(size.limit_bits);
    const Descriptor d(size);
    const upL_t n = d.words() / 2;
    const Words a = random_words(n, 1), b = random_words(n, 2);
    Words t(d.words());
    Memory memory(d);
    memory.ctx.tds = tds;
    memory.ctx.parallelizer = &process_parallelizer();
    for (auto _ : state) {
        if (square)
            d.sqr(memory.ctx, t.data(), 0, t.size(), a.data(), n, memory.first);
        else
            d.mul(memory.ctx, t.data(), 0, t.size(), a.data(), n, b.data(), n, memory.first, memory.second);
        benchmark::DoNotOptimize(t.data());
    }
    per_word(state, d.words());
    state.SetLabel(fft_kernels().name);
}

void gmp_product(benchmark::State& state, FftSize size) {
    const upL_t n = size.limit_bits / 128;
    const Words a = random_words(n, 1), b = random_words(n, 2);
    Words t(2 * n);
    for (auto _ : state) {
        mpn_mul_n(t.data(), a.data(), b.data(), mp_size_t(n));
        benchmark::DoNotOptimize(t.data());
    }
    per_word(state, 2 * n);
}

/// Operands that make coefficients large: pieces of 2^(b-1) - 1, whose balanced form is largest; such pieces
/// with the signs of a wave, which fall into one point of the transform; pieces that are all ones; and random
/// words.
enum Hard { RANDOM, ONES, LARGEST, WAVE, HARD_KINDS };

Words hard_operand(int kind, upL_t n, const FftSize& size, unsigned seed) {
    if (kind == RANDOM) return random_words(n, seed);
    if (kind == ONES) return Words(n, ~std::uint64_t(0));
    Words a(n);
    const unsigned b = size.b;
    const upL_t half_wave = size.points(), step = size.points() / 7 * 2 + 1;
    for (upL_t bit = 0; bit < 64 * n; bit++) {
        const bool negative = kind == WAVE && bit / b * step / half_wave % 2 != 0;
        // 2^(b-1) is -2^(b-1) in balanced form, and one to carry.
        if ((bit % b != b - 1) != negative) a[bit / 64] |= std::uint64_t(1) << (bit % 64);
    }
    return a;
}

double error_of(Descriptor& d, const Words& a, const Words& b) {
    Memory memory(d);
    Words t(d.words());
    FftProbe probe;
    d.observe(&probe);
    d.forward(memory.ctx, a.data(), a.size(), memory.first);
    d.forward(memory.ctx, b.data(), b.size(), memory.second);
    d.inverse_fmul(memory.ctx, t.data(), 0, t.size(), memory.first, memory.first, memory.second);
    return probe.largest_error;
}

int print_errors() {
    ensure_fft_tables(FFT_MAX_BITS);
    double worst = 0;
    std::printf("%s kernels; wrapped: both operands as long as the transform\n", fft_kernels().name);
    std::printf("%-9s %10s  %8s %8s %8s %8s   %8s %8s %8s %8s\n", "row", "bits", "random", "ones", "largest",
                "wave", "random", "ones", "largest", "wave");
    std::printf("%-9s %10s  %35s   %35s\n", "", "", "whole product", "wrapped");
    for (const FftSize& size : fft_sizes()) {
        Descriptor d(size);
        std::printf("%-9s %10u ", name_of(size).c_str(), size.limit_bits);
        for (upL_t n : {d.words() / 2, d.words()}) {
            for (int kind = 0; kind < HARD_KINDS; kind++) {
                const double error =
                    error_of(d, hard_operand(kind, n, size, 1), hard_operand(kind, n, size, 2));
                std::printf(" %8.5f", error);
                worst = std::max(worst, error);
            }
            std::printf("  ");
        }
        std::printf("\n");
    }
    std::printf("worst %.5f, bound 0.35\n", worst);
    return worst < 0.35 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "errors") == 0) return print_errors();
    for (const FftSize& size : fft_sizes()) {
        benchmark::RegisterBenchmark(("fft/" + name_of(size)).c_str(), product, size, 1, false);
        benchmark::RegisterBenchmark(("fft_sqr/" + name_of(size)).c_str(), product, size, 1, true);
        if (size.limit_bits > 1500000)
            benchmark::RegisterBenchmark(("fft_tds2/" + name_of(size)).c_str(), product, size, 2, false)
                ->UseRealTime();
        benchmark::RegisterBenchmark(("gmp/" + name_of(size)).c_str(), gmp_product, size);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
