// One transform: residues next to zero, refusals.
#include "fft_support.h"

namespace lumo::testing {
namespace {

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
