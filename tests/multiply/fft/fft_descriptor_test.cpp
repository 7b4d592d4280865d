// One transform: wrapped products at many lengths, residues, refusals.
#include "fft_support.h"

namespace lumo::testing {
namespace {

const upL_t SOME_BITS[] = {2048, 2560, 6144, 8192, 10240, 16384, 49152, 147456, 348160, 1474560, 3932160};

TEST(FftDescriptor, LongerProductsWrapNegatively) {
    for (upL_t bits : SOME_BITS) {
        FftBench bench(bits);
        const upL_t C = bench.words();
        const unsigned b = bench.d.size().b;
        for (Pattern pattern : {Pattern::random, Pattern::ones, Pattern::half, Pattern::sparse})
            for (upL_t AL : {C, C - 1, C / 2 + 1}) {
                const Words x = operand(pattern, AL, b, 1), y = operand(pattern, C, b, 2);
                ASSERT_EQ(bench.multiply(x, y), wrapped_product(x, y, C, 1))
                    << bits << " bits, " << AL << " words, " << name_of(pattern);
            }
        for (upL_t overflow : {upL_t(1), upL_t(2), C / 3, 2 * C / 3}) {
            const Words x = operand(Pattern::random, C - overflow / 4, 16, 3);
            const Words y = operand(Pattern::random, overflow + overflow / 4, 16, 4);
            const Words exact = exact_product(x, y), t = bench.multiply(x, y, overflow, C);
            // The lowest word may have lost a borrow to the words that wrapped; random words stop it there.
            EXPECT_LE(exact[overflow] - t[0], 1u);
            EXPECT_TRUE(std::equal(t.begin() + 1, t.end(), exact.begin() + long(overflow) + 1)) << bits;
        }
    }
}

TEST(FftDescriptor, ResiduesAroundZero) {
    // x = 2^(bits / 2): x^2 = -1, whose residue 2^bits does not fit and comes out as zero.
    for (upL_t bits : {upL_t(2048), upL_t(6144), upL_t(147456)}) {
        FftBench bench(bits);
        const upL_t C = bench.words();
        const auto single = [C](upL_t place, std::uint64_t word) {
            Words x(C);
            x[place] = word;
            return x;
        };
        const Words x = single(C / 2, 1), minus_two(C, ~std::uint64_t(0));
        Words minus_four = minus_two;  // (-2) 2 = 2^bits + 1 - 4
        minus_four[0] -= 2;
        EXPECT_EQ(bench.multiply(x, x), Words(C)) << "-1";
        EXPECT_EQ(bench.multiply(x, single(C / 2, 2)), minus_two);
        EXPECT_EQ(bench.multiply(minus_two, Words(1, 1)), minus_two);
        EXPECT_EQ(bench.multiply(minus_two, Words(1, 2)), minus_four);
        EXPECT_EQ(bench.multiply(minus_two, minus_two), single(0, 4));
        EXPECT_EQ(bench.multiply(minus_two, Words{}), Words(C)) << "an empty operand is zero";
    }
}

TEST(FftDescriptor, KnowsItsRowAndRefusesWhatDoesNotFit) {
    using Descriptor = FftDescriptor<std::uint64_t>;
    FftBench bench(2048);
    ensure_fft_tables(147456);
    const Descriptor d(147456);
    EXPECT_TRUE(d.same_transform(Descriptor(147455)));
    EXPECT_FALSE(d.same_transform(Descriptor(131072)));
    const Words a(33);
    try {
        bench.d.forward(bench.scratch.context(), a.data(), 33, bench.first.data());
        FAIL() << "a longer operand passed";
    } catch (const ConvolutionTooSmallException& e) {
        EXPECT_TRUE(e.convolution_size == 2048 && e.requested_size == 33 * 64);
    }
    MultiplyContext little = bench.scratch.context();
    little.scratch_bytes -= 128;
    EXPECT_THROW(bench.d.forward(little, a.data(), 32, bench.first.data()), BufferTooSmallException);
}

}  // namespace
}  // namespace lumo::testing
