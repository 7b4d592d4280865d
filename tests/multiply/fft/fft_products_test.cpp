// Products of the algorithm against GMP: every row of the size table, all shapes of operands.
#include <gtest/gtest.h>

#include "fft_support.h"

using namespace lumo;
using namespace lumo::test;

namespace {

template <typename wtype>
const FftAlgorithm<wtype>& fft() {
    static const FftAlgorithm<wtype> algorithm;
    return algorithm;
}

Words multiply(const Words& a, const Words& b) {
    Words t(a.size() + b.size());
    fft<std::uint64_t>().ensure_tables(t.size());
    Scratch scratch(fft<std::uint64_t>().max_buffer_size(t.size(), 1));
    fft<std::uint64_t>().mul(scratch.context(), t.data(), a.data(), a.size(), b.data(), b.size());
    EXPECT_TRUE(scratch.guard_intact());
    return t;
}

class FftRows : public testing::TestWithParam<FftSize> {};

std::string row_name(const testing::TestParamInfo<FftSize>& tested) {
    const FftSize& s = tested.param;
    return "m" + std::to_string(s.m) + "k" + std::to_string(s.k) + "b" + std::to_string(s.b);
}

}  // namespace

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

INSTANTIATE_TEST_SUITE_P(All, FftRows, testing::ValuesIn(fft_sizes().begin(), fft_sizes().end()), row_name);

TEST(FftProducts, LengthsOfOperandsMayDiffer) {
    for (upL_t words : {32u, 40u, 64u, 77u, 100u, 144u, 1000u, 5000u, 24576u})
        for (upL_t AL : {upL_t(1), upL_t(2), upL_t(3), upL_t(7), words / 4, words / 2 - 1, words / 2 + 1,
                         words - 2, words - 1}) {
            const Words a = operand(Pattern::random, AL, 16, unsigned(AL));
            const Words b = operand(Pattern::ones, words - AL, 16, 1);
            ASSERT_EQ(multiply(a, b), exact_product(a, b)) << AL << " + " << words - AL << " words";
        }
}

TEST(FftProducts, SquareEqualsProductOfCopies) {
    for (upL_t words : {16u, 39u, 500u, 9000u}) {
        const Words a = operand(Pattern::random, words, 16, unsigned(words)), copy = a;
        Words t(2 * words);
        fft<std::uint64_t>().ensure_tables(t.size());
        Scratch scratch(fft<std::uint64_t>().max_buffer_size(t.size(), 1));
        fft<std::uint64_t>().sqr(scratch.context(), t.data(), a.data(), words);
        EXPECT_EQ(t, exact_product(a, a));
        EXPECT_EQ(t, multiply(a, copy));
        EXPECT_EQ(t, multiply(a, a));
    }
}

TEST(FftProducts, PartialProductsAreWindowsOfTheExactOne) {
    const Words a = operand(Pattern::random, 301, 16, 5), b = operand(Pattern::random, 200, 16, 6);
    const Words exact = exact_product(a, b), square = exact_product(a, a);
    fft<std::uint64_t>().ensure_tables(602);
    Scratch scratch(fft<std::uint64_t>().max_buffer_size(602, 1));
    const auto window = [](const Words& t, upL_t s, upL_t L) {
        return Words(t.begin() + long(s), t.begin() + long(L));
    };
    for (auto [s, L] :
         {std::pair<upL_t, upL_t>{0, 1}, {0, 501}, {1, 501}, {100, 300}, {250, 250}, {500, 501}}) {
        Words t(L - s);
        fft<std::uint64_t>().mul_partial(scratch.context(), t.data(), s, L, a.data(), 301, b.data(), 200);
        EXPECT_EQ(t, window(exact, s, L));
        fft<std::uint64_t>().mul_small(scratch.context(), t.data(), s, L, b.data(), 200, a.data(), 301);
        EXPECT_EQ(t, window(exact, s, L));
        fft<std::uint64_t>().sqr_partial(scratch.context(), t.data(), s, L, a.data(), 301);
        EXPECT_EQ(t, window(square, s, L));
    }
}

TEST(FftProducts, WordsOf32BitsGiveTheSameInteger) {
    for (upL_t words : {20u, 33u, 700u, 8192u}) {
        const Words a = operand(Pattern::random, words, 16, 1), b = operand(Pattern::half, words, 16, 2);
        const Words exact = exact_product(a, b);
        // Odd lengths too: the last half word is dropped from one operand.
        for (upL_t AL : {2 * words, 2 * words - 1}) {
            std::vector<std::uint32_t> a32(AL), b32(2 * words), t(AL + 2 * words);
            std::memcpy(a32.data(), a.data(), 4 * AL);
            std::memcpy(b32.data(), b.data(), 8 * words);
            fft<std::uint32_t>().ensure_tables(t.size());
            Scratch scratch(fft<std::uint32_t>().max_buffer_size(t.size(), 1));
            fft<std::uint32_t>().mul(scratch.context(), t.data(), a32.data(), AL, b32.data(), 2 * words);
            Words expected = exact;
            if (AL % 2) {
                Words shorter = a;
                shorter.back() &= 0xffffffff;
                expected = exact_product(shorter, b);
            }
            EXPECT_EQ(std::memcmp(t.data(), expected.data(), 4 * t.size()), 0) << AL;
        }
    }
}

TEST(FftProducts, TooLittleScratchIsAnError) {
    const Words a = operand(Pattern::random, 100, 16, 1);
    Words t(200);
    fft<std::uint64_t>().ensure_tables(200);
    Scratch scratch(FftDescriptor<std::uint64_t>(12800).array_bytes() + 128);
    EXPECT_THROW(fft<std::uint64_t>().sqr(scratch.context(), t.data(), a.data(), 100),
                 BufferTooSmallException);
}
