// Words do not depend on the instruction set, on the number of pieces or on who runs them.
#include "fft_support.h"
#include "lumo/foundation/parallel/pushpool.h"

namespace lumo::testing {
namespace {

/// By images, in one go, and a window of it.
void expect_product(FftBench& bench, const Words& a, const Words& b, const Words& expected, upL_t tds,
                    BasicParallelizer& pool) {
    const upL_t C = bench.words();
    SCOPED_TRACE(::testing::Message()
                 << describe(bench.d.size()) << " " << fft_kernels().name << " tds " << tds);
    ASSERT_EQ(bench.multiply(a, b, 0, C, tds, pool), expected);
    ASSERT_EQ(bench.multiply_directly(a, b, 0, C, tds, pool), expected);
    ASSERT_EQ(bench.multiply_directly(b, a, 3, 3 + C / 2, tds, pool), window_of(expected, 3, 3 + C / 2));
}

TEST(FftIdentity, AllInstructionSetsGiveTheSameWords) {
    unsigned seed = 1;
    for (const FftSize& size : fft_sizes_up_to(4000000)) {
        FftBench bench(size);
        // A full and a longer operand: the product wraps.
        const Words a = operand(Pattern::random, bench.words(), size.b, seed);
        const Words b =
            operand(seed % 2 ? Pattern::half : Pattern::random, bench.words() - 1, size.b, seed + 1);
        const Words expected = wrapped_product(a, b, bench.words(), 1);
        for_kernel_sets([&](KernelSet) { expect_product(bench, a, b, expected, 1, serial_parallelizer()); });
        if (HasFatalFailure()) return;
        seed++;
    }
}

TEST(FftIdentity, ImagesOfOneSetServeAnother) {
    for (upL_t bits : {upL_t(20480), upL_t(348160), upL_t(1474560)}) {
        FftBench bench(bits);
        const auto& d = bench.d;
        const MultiplyContext ctx = bench.scratch.context();
        const Words a = operand(Pattern::random, d.words() / 2, 16, 8),
                    b = operand(Pattern::ones, d.words() / 2, 16, 9);
        for_kernel_sets([&](KernelSet) {
            d.forward(ctx, a.data(), a.size(), bench.first.data());
            for_kernel_sets([&](KernelSet) {
                Scratch out(d.array_bytes());
                Words t(d.words());
                d.forward(ctx, b.data(), b.size(), bench.second.data());
                d.inverse_fmul(ctx, t.data(), 0, t.size(), out.data(), bench.first.data(),
                               bench.second.data());
                EXPECT_EQ(t, exact_product(a, b));
            });
        });
    }
}

TEST(FftIdentity, WordsDoNotDependOnThePieces) {
    const auto pool = make_pushpool(3);
    for (const FftSize& size : fft_sizes()) {
        // The first rows that are shared out at all, one of each shape, and some larger ones.
        if (size.limit_bits < 1474560 || size.limit_bits > 14000000 || size.b % 2 == 0) continue;
        FftBench bench(size);
        const Words a = operand(Pattern::random, bench.words(), size.b, 5),
                    b = operand(Pattern::half, bench.words() / 2, size.b, 6);
        const Words expected = wrapped_product(a, b, bench.words(), 1);
        for (upL_t tds : {1u, 2u, 3u, 7u, 1000u}) expect_product(bench, a, b, expected, tds, *pool);
        if (HasFatalFailure()) return;
    }
    for (upL_t bits : {upL_t(12288), upL_t(1474560), upL_t(2129920), upL_t(9437184)}) {
        FftBench bench(bits);
        const upL_t C = bench.words();
        const Words a = operand(Pattern::random, C, bench.d.size().b, 5);
        for (upL_t tds : {1u, 2u, 5u})
            EXPECT_EQ(bench.multiply_directly(a, a, 0, C, tds, *pool), wrapped_product(a, a, C, 1)) << bits;
    }
    for (upL_t bits : {upL_t(31457280), upL_t(36700160), upL_t(57671680), upL_t(75497472)}) {
        FftBench bench(bits);
        const upL_t C = bench.words();
        const Words a = operand(Pattern::random, C / 3, bench.d.size().b, 5);
        const Words b = operand(Pattern::half, C - a.size(), bench.d.size().b, 6);
        ASSERT_EQ(bench.multiply(a, b, 0, C, 4, *pool), bench.multiply(b, a)) << bits;
    }
}

TEST(FftIdentity, ASetTheMachineLacksIsNotSelected) {
    for_kernel_sets([](KernelSet set) { EXPECT_EQ(active_kernels(), set); });
    EXPECT_TRUE(select_kernels(KernelSet::portable));
    EXPECT_STREQ(fft_kernels().name, "portable");
    EXPECT_EQ(select_kernels(KernelSet::avx512), supported_kernels() == KernelSet::avx512);
    select_kernels(supported_kernels());
}

}  // namespace
}  // namespace lumo::testing
