// Products against GMP in every row of the size table.
#include "fft_support.h"

namespace lumo::testing {
namespace {

class FftRows : public ::testing::TestWithParam<FftSize> {};

TEST_P(FftRows, FullLengthProductsAreExact) {
    const FftSize size = GetParam();
    FftBench bench(size);
    const upL_t words = bench.words();
    for (Pattern pattern :
         {Pattern::half, Pattern::ones, Pattern::random, Pattern::sparse, Pattern::alternating}) {
        if (words > 300000 && pattern != Pattern::half) continue;
        if (words > 30000 && pattern == Pattern::alternating) continue;
        const upL_t AL = pattern == Pattern::sparse ? words / 3 + 1 : words / 2;
        const Words a = operand(pattern, AL, size.b, 11), b = operand(pattern, words - AL, size.b, 12);
        ASSERT_EQ(bench.multiply_directly(a, b, 0, words), exact_product(a, b))
            << describe(size) << " " << name_of(pattern);
    }
}

INSTANTIATE_TEST_SUITE_P(All, FftRows, ::testing::ValuesIn(fft_sizes().begin(), fft_sizes().end()),
                         [](const auto& tested) { return describe(tested.param); });

}  // namespace
}  // namespace lumo::testing
