// Products of the algorithm against GMP: every row of the size table, all shapes of operands.
#include "fft_support.h"

namespace lumo::testing {
namespace {

/// Window [s, L) of the product by the algorithm, within the sizes it asks for.
template <typename wtype>
std::vector<wtype> multiply(const std::vector<wtype>& a, const std::vector<wtype>& b, upL_t s, upL_t L) {
    const FftAlgorithm<wtype> fft;
    const upL_t n = a.size() + b.size();
    fft.ensure_tables(n);
    Scratch scratch(fft.max_buffer_size(n, 1));
    std::vector<wtype> t(L - s), u(L - s);
    const MultiplyContext ctx = scratch.context();
    const bool square = &a == &b;
    if (s == 0 && L == n)
        square ? fft.sqr(ctx, t.data(), a.data(), a.size())
               : fft.mul(ctx, t.data(), a.data(), a.size(), b.data(), b.size());
    else
        square ? fft.sqr_partial(ctx, t.data(), s, L, a.data(), a.size())
               : fft.mul_partial(ctx, t.data(), s, L, a.data(), a.size(), b.data(), b.size());
    fft.mul_small(ctx, u.data(), s, L, b.data(), b.size(), a.data(), a.size());
    EXPECT_EQ(t, u);
    EXPECT_TRUE(scratch.intact());
    return t;
}
Words multiply(const Words& a, const Words& b) {
    return multiply(a, b, 0, a.size() + b.size());
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

TEST(FftProducts, LengthsOfOperandsMayDiffer) {
    for (upL_t words : {32u, 40u, 64u, 77u, 100u, 144u, 1000u, 5000u, 24576u}) {
        for (upL_t AL : {upL_t(1), upL_t(2), upL_t(3), upL_t(7), words / 4, words / 2 - 1, words / 2 + 1,
                         words - 2, words - 1}) {
            const Words a = operand(Pattern::random, AL, 16, unsigned(AL));
            const Words b = operand(Pattern::ones, words - AL, 16, 1);
            ASSERT_EQ(multiply(a, b), exact_product(a, b)) << AL << " + " << words - AL << " words";
        }
        const Words a = operand(Pattern::random, words / 2, 16, unsigned(words)), copy = a;
        EXPECT_EQ(multiply(a, a), exact_product(a, a));
        EXPECT_EQ(multiply(a, copy), exact_product(a, a));
    }
}

TEST(FftProducts, PartialProductsAreWindowsOfTheExactOne) {
    const Words a = operand(Pattern::random, 301, 16, 5), b = operand(Pattern::random, 200, 16, 6);
    for (auto [s, L] :
         {std::pair<upL_t, upL_t>{0, 1}, {0, 501}, {1, 501}, {100, 300}, {250, 250}, {500, 501}}) {
        EXPECT_EQ(multiply(a, b, s, L), window_of(exact_product(a, b), s, L));
        EXPECT_EQ(multiply(a, a, s, L), window_of(exact_product(a, a), s, L));
    }
}

TEST(FftProducts, WordsOf32BitsGiveTheSameInteger) {
    for (upL_t words : {20u, 33u, 700u, 8192u}) {
        Words a = operand(Pattern::random, words, 16, 1);
        const Words b = operand(Pattern::half, words, 16, 2);
        // Odd lengths too: the last half word is dropped from one operand.
        for (upL_t AL : {2 * words, 2 * words - 1}) {
            std::vector<std::uint32_t> a32(AL), b32(2 * words);
            std::memcpy(a32.data(), a.data(), 4 * AL);
            std::memcpy(b32.data(), b.data(), 8 * words);
            const auto t = multiply(a32, b32, 0, AL + 2 * words);
            if (AL % 2) a.back() &= 0xffffffff;
            EXPECT_EQ(std::memcmp(t.data(), exact_product(a, b).data(), 4 * t.size()), 0) << AL;
        }
    }
}

TEST(FftProducts, TooLittleScratchIsAnError) {
    const FftAlgorithm<std::uint64_t> fft;
    const Words a = operand(Pattern::random, 100, 16, 1);
    Words t(200);
    fft.ensure_tables(200);
    Scratch scratch(FftDescriptor<std::uint64_t>(12800).array_bytes() + 128);
    EXPECT_THROW(fft.sqr(scratch.context(), t.data(), a.data(), 100), BufferTooSmallException);
}

}  // namespace
}  // namespace lumo::testing
