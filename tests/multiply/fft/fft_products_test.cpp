// Products against GMP in every row of the size table.
#include "fft_support.h"

namespace lumo::testing {
namespace {

Words multiply(const Words& a, const Words& b) {
    const FftAlgorithm<std::uint64_t> fft;
    Words t(a.size() + b.size());
    fft.ensure_tables(t.size());
    Scratch scratch(fft.max_buffer_size(t.size(), 1));
    fft.mul(scratch.context(), t.data(), a.data(), a.size(), b.data(), b.size());
    EXPECT_TRUE(scratch.intact());
    return t;
}

class FftRows : public ::testing::TestWithParam<FftSize> {};

TEST_P(FftRows, FullLengthProductsAreExact) {
    const FftSize size = GetParam();
    const upL_t words = size.limit_bits / 64;
    for (Pattern pattern :
         {Pattern::half, Pattern::ones, Pattern::random, Pattern::sparse, Pattern::alternating}) {
        if (words > 300000 && pattern != Pattern::half) continue;
        if (words > 30000 && pattern == Pattern::alternating) continue;
        const upL_t AL = pattern == Pattern::sparse ? words / 3 + 1 : words / 2;
        const Words a = operand(pattern, AL, size.b, 11), b = operand(pattern, words - AL, size.b, 12);
        ASSERT_EQ(multiply(a, b), exact_product(a, b)) << describe(size) << " " << name_of(pattern);
    }
}

INSTANTIATE_TEST_SUITE_P(All, FftRows, ::testing::ValuesIn(fft_sizes().begin(), fft_sizes().end()),
                         [](const auto& tested) { return describe(tested.param); });

}  // namespace
}  // namespace lumo::testing
