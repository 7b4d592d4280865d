// Words do not depend on the instruction set, on the number of pieces or on who runs them.
#include <gtest/gtest.h>

#include "fft_support.h"
#include "lumo/foundation/parallel/pushpool.h"

using namespace lumo;
using namespace lumo::test;

namespace {

using Descriptor = FftDescriptor<std::uint64_t>;

std::vector<KernelSet> runnable_sets() {
    std::vector<KernelSet> sets;
    for (KernelSet set : {KernelSet::portable, KernelSet::avx2, KernelSet::avx512})
        if (set <= supported_kernels()) sets.push_back(set);
    return sets;
}

Words product(const Descriptor& d, const Words& a, const Words& b, upL_t tds, BasicParallelizer& pool) {
    Scratch first(d.array_bytes()), second(d.array_bytes()), scratch(d.scratch_bytes());
    const MultiplyContext ctx = scratch.context(tds, pool);
    Words t(d.words());
    d.forward(ctx, a.data(), a.size(), first.data());
    d.forward(ctx, b.data(), b.size(), second.data());
    d.inverse_fmul(ctx, t.data(), 0, t.size(), second.data(), first.data(), second.data());

    // The short road, and a window of it.
    Words u(d.words()), v(d.words() / 2);
    d.mul(ctx, u.data(), 0, u.size(), a.data(), a.size(), b.data(), b.size(), first.data(), second.data());
    EXPECT_EQ(u, t);
    d.mul(ctx, v.data(), 3, 3 + v.size(), b.data(), b.size(), a.data(), a.size(), first.data(),
          second.data());
    EXPECT_TRUE(std::equal(v.begin(), v.end(), t.begin() + 3));
    EXPECT_TRUE(first.guard_intact() && second.guard_intact() && scratch.guard_intact());
    return t;
}

}  // namespace

TEST(FftIdentity, AllInstructionSetsGiveTheSameWords) {
    const KernelGuard guard;
    unsigned seed = 1;
    for (const FftSize& size : fft_sizes_up_to(4000000)) {
        ensure_fft_tables(size.limit_bits);
        const Descriptor d(size);
        // A full and a longer operand: the product wraps.
        const Words a = operand(Pattern::random, d.words(), size.b, seed);
        const Words b = operand(seed % 2 ? Pattern::half : Pattern::random, d.words() - 1, size.b, seed + 1);
        const Words expected = wrapped_product(a, b, d.words());
        for (KernelSet set : runnable_sets()) {
            ASSERT_TRUE(select_kernels(set));
            ASSERT_EQ(product(d, a, b, 1, serial_parallelizer()), expected)
                << describe(size) << " " << fft_kernels().name << " seed " << seed;
        }
        seed++;
    }
}

TEST(FftIdentity, ImagesOfOneSetServeAnother) {
    const KernelGuard guard;
    for (upL_t bits : {upL_t(20480), upL_t(348160), upL_t(1474560)}) {
        ensure_fft_tables(bits);
        const Descriptor d(bits);
        const Words a = operand(Pattern::random, d.words() / 2, 16, 8),
                    b = operand(Pattern::ones, d.words() / 2, 16, 9);
        for (KernelSet forward : runnable_sets())
            for (KernelSet inverse : runnable_sets()) {
                Scratch first(d.array_bytes()), second(d.array_bytes()), scratch(d.scratch_bytes());
                Words t(d.words());
                select_kernels(forward);
                d.forward(scratch.context(), a.data(), a.size(), first.data());
                select_kernels(inverse);
                d.forward(scratch.context(), b.data(), b.size(), second.data());
                d.inverse_fmul(scratch.context(), t.data(), 0, t.size(), first.data(), first.data(),
                               second.data());
                EXPECT_EQ(t, exact_product(a, b));
            }
    }
}

TEST(FftIdentity, WordsDoNotDependOnThePieces) {
    const auto pool = make_pushpool(3);
    for (const FftSize& size : fft_sizes()) {
        // The first rows that are shared out at all, one of each shape, and some larger ones.
        if (size.limit_bits < 1474560 || size.limit_bits > 14000000 || size.b % 2 == 0) continue;
        ensure_fft_tables(size.limit_bits);
        const Descriptor d(size);
        const Words a = operand(Pattern::random, d.words(), size.b, 5),
                    b = operand(Pattern::half, d.words() / 2, size.b, 6);
        const Words expected = wrapped_product(a, b, d.words());
        for (upL_t tds : {1u, 2u, 3u, 7u, 1000u})
            ASSERT_EQ(product(d, a, b, tds, *pool), expected) << describe(size) << " tds " << tds;
    }
}

TEST(FftIdentity, SquaresDoNotDependOnThePieces) {
    const auto pool = make_pushpool(3);
    for (upL_t bits : {upL_t(12288), upL_t(1474560), upL_t(2129920), upL_t(9437184)}) {
        ensure_fft_tables(bits);
        const Descriptor d(bits);
        const Words a = operand(Pattern::random, d.words(), d.size().b, 5);
        Scratch array(d.array_bytes()), scratch(d.scratch_bytes());
        for (upL_t tds : {1u, 2u, 5u}) {
            Words t(d.words());
            d.sqr(scratch.context(tds, *pool), t.data(), 0, t.size(), a.data(), a.size(), array.data());
            EXPECT_EQ(t, wrapped_product(a, a, d.words())) << describe(d.size()) << " tds " << tds;
        }
    }
}

TEST(FftIdentity, LargestShapesShareOutToo) {
    const auto pool = make_pushpool(2);
    for (upL_t bits : {upL_t(31457280), upL_t(36700160), upL_t(57671680), upL_t(75497472)}) {
        ensure_fft_tables(bits);
        const Descriptor d(bits);
        const Words a = operand(Pattern::random, d.words() / 3, d.size().b, 5);
        const Words b = operand(Pattern::half, d.words() - a.size(), d.size().b, 6);
        ASSERT_EQ(product(d, a, b, 4, *pool), product(d, b, a, 1, serial_parallelizer()))
            << describe(d.size());
    }
}

TEST(FftIdentity, ASetTheMachineLacksIsNotSelected) {
    const KernelGuard guard;
    EXPECT_TRUE(select_kernels(KernelSet::portable));
    EXPECT_STREQ(fft_kernels().name, "portable");
    EXPECT_EQ(select_kernels(KernelSet::avx512), supported_kernels() == KernelSet::avx512);
    EXPECT_EQ(active_kernels() == KernelSet::avx512, supported_kernels() == KernelSet::avx512);
}
