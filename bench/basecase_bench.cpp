// Short products and the loops under them, beside GMP. One argument: the length in 64-bit digits.
#include <benchmark/benchmark.h>
#include <gmp.h>

#include <random>
#include <vector>

#include "lumo/multiply/basecase/basecase.h"
#include "lumo/multiply/basecase/karatsuba.h"
#include "lumo/numbers/words/words.h"

namespace {

using namespace lumo;
using Digits = std::vector<std::uint64_t>;

Digits random_digits(upL_t count, unsigned seed) {
    std::mt19937_64 random(seed);
    Digits digits(count);
    for (auto& digit : digits) digit = random();
    return digits;
}

/// Two operands and room for their product, as words of either type.
template <typename wtype>
struct Operands {
    explicit Operands(const benchmark::State& state)
        : digits(static_cast<upL_t>(state.range(0))),
          words(digits * 8 / sizeof(wtype)),
          a(random_digits(digits, 1)),
          b(random_digits(digits, 2)),
          t(2 * digits),
          scratch(4 * digits + 128) {}
    wtype* T() { return reinterpret_cast<wtype*>(t.data()); }
    const wtype* A() const { return reinterpret_cast<const wtype*>(a.data()); }
    const wtype* B() const { return reinterpret_cast<const wtype*>(b.data()); }
    wtype* S() { return reinterpret_cast<wtype*>(scratch.data()); }
    upL_t digits, words;
    Digits a, b, t, scratch;
};

template <typename wtype>
void mulB(benchmark::State& state) {
    Operands<wtype> x(state);
    for (auto _ : state) {
        Basecase::mulB(x.T(), x.A(), x.words, x.B(), x.words);
        benchmark::ClobberMemory();
    }
}

template <typename wtype>
void mulK(benchmark::State& state) {
    Operands<wtype> x(state);
    for (auto _ : state) {
        Basecase::mulK(x.T(), x.A(), x.words, x.B(), x.words, x.S());
        benchmark::ClobberMemory();
    }
}

template <typename wtype>
void sqrK(benchmark::State& state) {
    Operands<wtype> x(state);
    for (auto _ : state) {
        Basecase::sqrK(x.T(), x.A(), x.words, x.S());
        benchmark::ClobberMemory();
    }
}

void gmp_mul(benchmark::State& state) {
    Operands<mp_limb_t> x(state);
    for (auto _ : state) {
        mpn_mul_n(x.T(), x.A(), x.B(), static_cast<mp_size_t>(x.digits));
        benchmark::ClobberMemory();
    }
}

void gmp_sqr(benchmark::State& state) {
    Operands<mp_limb_t> x(state);
    for (auto _ : state) {
        mpn_sqr(x.T(), x.A(), static_cast<mp_size_t>(x.digits));
        benchmark::ClobberMemory();
    }
}

void per_digit(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void add(benchmark::State& state) {
    Operands<std::uint64_t> x(state);
    for (auto _ : state) benchmark::DoNotOptimize(bp_add<std::uint64_t>(x.T(), x.A(), x.B(), x.words, 0));
    per_digit(state);
}

void gmp_add(benchmark::State& state) {
    Operands<mp_limb_t> x(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(mpn_add_n(x.T(), x.A(), x.B(), static_cast<mp_size_t>(x.digits)));
    per_digit(state);
}

void mul_word(benchmark::State& state) {
    Operands<std::uint64_t> x(state);
    for (auto _ : state) benchmark::DoNotOptimize(bp_mul_uW<std::uint64_t>(x.T(), x.A(), x.words, x.b[0], 1));
    per_digit(state);
}

void gmp_mul_word(benchmark::State& state) {
    Operands<mp_limb_t> x(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(mpn_mul_1(x.T(), x.A(), static_cast<mp_size_t>(x.digits), x.b[0]));
    per_digit(state);
}

void hash(benchmark::State& state) {
    Operands<std::uint64_t> x(state);
    for (auto _ : state) benchmark::DoNotOptimize(bp_hash<std::uint64_t>(0, x.A(), x.words));
    per_digit(state);
}

/// Around the fixed lengths, the thresholds of Karatsuba, the end of the table's row and that of direct
/// products.
void short_lengths(benchmark::internal::Benchmark* bench) {
    for (int length : {4, 8, 11, 12, 13, 16, 20, 22, 23, 30, 39, 64, 128, 160, 256}) bench->Arg(length);
}
BENCHMARK(gmp_mul)->Apply(short_lengths);
BENCHMARK(mulK<std::uint64_t>)->Apply(short_lengths);
BENCHMARK(mulK<std::uint32_t>)->Apply(short_lengths);
BENCHMARK(mulB<std::uint64_t>)->Apply(short_lengths);
BENCHMARK(gmp_sqr)->Apply(short_lengths);
BENCHMARK(sqrK<std::uint64_t>)->Apply(short_lengths);
BENCHMARK(sqrK<std::uint32_t>)->Apply(short_lengths);
BENCHMARK(gmp_add)->Arg(10)->Arg(1000);
BENCHMARK(add)->Arg(10)->Arg(1000);
BENCHMARK(gmp_mul_word)->Arg(10)->Arg(1000);
BENCHMARK(mul_word)->Arg(10)->Arg(1000);
BENCHMARK(hash)->Arg(10)->Arg(1000);

}  // namespace

BENCHMARK_MAIN();
