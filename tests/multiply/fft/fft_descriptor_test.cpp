// One transform: wrapped products, held images, windows, refusals.
#include <gtest/gtest.h>

#include "fft_support.h"

using namespace lumo;
using namespace lumo::test;

namespace {

using Descriptor = FftDescriptor<std::uint64_t>;

/// A descriptor with its memory.
struct Bench {
    explicit Bench(upL_t bits)
        : descriptor((ensure_fft_tables(bits), bits)),
          first(descriptor.array_bytes()),
          second(descriptor.array_bytes()),
          scratch(descriptor.scratch_bytes()) {}
    ~Bench() {
        EXPECT_TRUE(first.guard_intact());
        EXPECT_TRUE(second.guard_intact());
        EXPECT_TRUE(scratch.guard_intact());
    }
    upL_t words() const { return descriptor.words(); }
    Words multiply(const Words& a, const Words& b, upL_t s, upL_t L) {
        Words t(L - s);
        const MultiplyContext ctx = scratch.context();
        descriptor.forward(ctx, a.data(), a.size(), first.data());
        descriptor.forward(ctx, b.data(), b.size(), second.data());
        descriptor.inverse_fmul(ctx, t.data(), s, L, first.data(), first.data(), second.data());
        return t;
    }
    Words multiply(const Words& a, const Words& b) { return multiply(a, b, 0, words()); }

    Descriptor descriptor;
    Scratch first, second, scratch;
};

const upL_t SOME_BITS[] = {2048, 2560, 6144, 8192, 10240, 16384, 49152, 147456, 348160, 1474560, 3932160};

}  // namespace

TEST(FftDescriptor, LongerProductsWrapNegatively) {
    for (upL_t bits : SOME_BITS) {
        Bench bench(bits);
        const upL_t C = bench.words();
        for (Pattern pattern : {Pattern::random, Pattern::ones, Pattern::half, Pattern::sparse})
            for (upL_t AL : {C, C - 1, C / 2 + 1}) {
                const Words a = operand(pattern, AL, bench.descriptor.size().b, 1);
                const Words b = operand(pattern, C, bench.descriptor.size().b, 2);
                ASSERT_EQ(bench.multiply(a, b), wrapped_product(a, b, C))
                    << bits << " bits, " << AL << " words, " << name_of(pattern);
            }
    }
}

TEST(FftDescriptor, WordsAboveTheWrapAreThoseOfTheProduct) {
    for (upL_t bits : SOME_BITS) {
        Bench bench(bits);
        const upL_t C = bench.words();
        for (upL_t overflow : {upL_t(1), upL_t(2), C / 3, 2 * C / 3}) {
            const Words a = operand(Pattern::random, C - overflow / 4, 16, 3);
            const Words b = operand(Pattern::random, overflow + overflow / 4, 16, 4);
            const Words exact = exact_product(a, b), t = bench.multiply(a, b, overflow, C);
            // The lowest word may have lost a borrow to the words that wrapped; random words stop it there.
            EXPECT_LE(exact[overflow] - t[0], 1u);
            EXPECT_TRUE(std::equal(t.begin() + 1, t.end(), exact.begin() + long(overflow) + 1)) << bits;
        }
    }
}

TEST(FftDescriptor, ResiduesAroundZero) {
    // x = 2^(bits / 2): x^2 = -1, whose residue 2^bits does not fit and comes out as zero.
    for (upL_t bits : {upL_t(2048), upL_t(6144), upL_t(147456)}) {
        Bench bench(bits);
        const upL_t C = bench.words();
        Words x(C), one(1, 1), y(C), all(C, ~std::uint64_t(0)), two(1, 2);
        x[C / 2] = 1;
        EXPECT_EQ(bench.multiply(x, x), Words(C)) << "-1";
        y[C / 2] = 2;
        Words minus_two = all;  // 2^bits - 1
        EXPECT_EQ(bench.multiply(x, y), minus_two);
        EXPECT_EQ(bench.multiply(all, one), all);
        Words minus_four = all;  // (-2) 2 = 2^bits + 1 - 4
        minus_four[0] -= 2;
        EXPECT_EQ(bench.multiply(all, two), minus_four);
        Words four(C);
        four[0] = 4;
        EXPECT_EQ(bench.multiply(all, all), four);
        EXPECT_EQ(bench.multiply(all, Words{}), Words(C)) << "an empty operand is zero";
    }
}

TEST(FftDescriptor, ImagesServeSeveralProducts) {
    Bench bench(147456);
    const upL_t C = bench.words(), n = C / 2;
    const Words a = operand(Pattern::random, n, 16, 1), b = operand(Pattern::random, n, 16, 2);
    const Descriptor& d = bench.descriptor;
    Scratch out(d.array_bytes());
    const MultiplyContext ctx = bench.scratch.context();
    Words t(C);
    d.forward(ctx, a.data(), n, bench.first.data());
    d.forward(ctx, b.data(), n, bench.second.data());
    d.inverse_fmul(ctx, t.data(), 0, C, out.data(), bench.first.data(), bench.second.data());
    EXPECT_EQ(t, exact_product(a, b));
    d.inverse_fsqr(ctx, t.data(), 0, C, out.data(), bench.first.data());
    EXPECT_EQ(t, exact_product(a, a));
    d.inverse_fmul(ctx, t.data(), 0, C, bench.second.data(), bench.first.data(), bench.second.data());
    EXPECT_EQ(t, exact_product(a, b));
    d.inverse_fsqr(ctx, t.data(), 0, C, bench.first.data(), bench.first.data());
    EXPECT_EQ(t, exact_product(a, a));
}

TEST(FftDescriptor, SameTransformMeansSameRow) {
    Bench bench(147456);
    EXPECT_TRUE(bench.descriptor.same_transform(Descriptor(147456)));
    EXPECT_TRUE(bench.descriptor.same_transform(Descriptor(147455)));
    EXPECT_FALSE(bench.descriptor.same_transform(Descriptor(131072)));
}

TEST(FftDescriptor, RefusesWhatDoesNotFit) {
    Bench bench(2048);
    Words a(33), t(32);
    try {
        bench.descriptor.forward(bench.scratch.context(), a.data(), 33, bench.first.data());
        FAIL() << "a longer operand passed";
    } catch (const ConvolutionTooSmallException& e) {
        EXPECT_EQ(e.function, "FFT");
        EXPECT_EQ(e.message, "Convolution length is too small.");
        EXPECT_EQ(e.convolution_size, 2048u);
        EXPECT_EQ(e.requested_size, 33 * 64u);
    }
    MultiplyContext little = bench.scratch.context();
    little.scratch_bytes -= 128;
    EXPECT_THROW(bench.descriptor.forward(little, a.data(), 32, bench.first.data()), BufferTooSmallException);
}
