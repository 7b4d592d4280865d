// Products against GMP over all rows of the size table.
#include <gtest/gtest.h>

#include "fft_support.h"

using namespace lumo;
using namespace lumo::test;

namespace {

const FftAlgorithm<std::uint64_t> fft;

Words multiply(const Words& a, const Words& b, upL_t tds = 1,
               BasicParallelizer& pool = serial_parallelizer()) {
    Words t(a.size() + b.size());
    fft.ensure_tables(t.size());
    Scratch scratch(fft.max_buffer_size(t.size(), tds));
    fft.mul(scratch.context(tds, pool), t.data(), a.data(), a.size(), b.data(), b.size());
    EXPECT_TRUE(scratch.guard_intact());
    return t;
}

}  // namespace

class FftRows : public testing::TestWithParam<FftSize> {};

TEST_P(FftRows, FullLengthProductsAreExact) {
    const FftSize size = GetParam();
    const upL_t words = size.limit_bits / 64;
    for (Pattern pattern : {Pattern::random, Pattern::ones, Pattern::sparse, Pattern::half}) {
        if (words > 50000 && pattern != Pattern::half && pattern != Pattern::ones) continue;
        const upL_t AL = pattern == Pattern::sparse ? words / 3 + 1 : words / 2;
        const Words a = operand(pattern, AL, size.b, 11), b = operand(pattern, words - AL, size.b, 12);
        ASSERT_EQ(multiply(a, b), exact_product(a, b)) << describe(size) << " " << name_of(pattern);
    }
}

INSTANTIATE_TEST_SUITE_P(All, FftRows, testing::ValuesIn(fft_sizes().begin(), fft_sizes().end()),
                         [](const auto& tested) {
                             const FftSize& s = tested.param;
                             return "m" + std::to_string(s.m) + "k" + std::to_string(s.k) + "b" +
                                    std::to_string(s.b);
                         });
