// Schoolbook, Karatsuba and the algorithm made of them, against GMP.
#include "lumo/multiply/basecase/basecase.h"

#include <cstring>

#include "kernel_sets.h"
#include "lumo/multiply/basecase/bkt_algorithm.h"
#include "lumo/multiply/basecase/karatsuba.h"
#include "lumo/multiply/kernels/mul52_kernel.h"
#include "products.h"

namespace lumo {
namespace {

using namespace testing;
using namespace Basecase;

template <typename wtype>
class Basecases : public WordTest<wtype> {
 protected:
    /// Every pair of shapes that can differ, under every set of kernels.
    template <typename Check>
    void for_operands(upL_t AL, upL_t BL, Check check) {
        for_kernel_sets([&](KernelSet) { for_shapes(AL, BL, check); });
    }

 private:
    template <typename Check>
    void for_shapes(upL_t AL, upL_t BL, Check check) {
        for (Shape shape_a : ALL_SHAPES)
            for (Shape shape_b : ALL_SHAPES) {
                if (::testing::Test::HasFatalFailure()) return;
                SCOPED_TRACE(::testing::Message() << AL << " x " << BL << " words, shapes " << int(shape_a)
                                                  << " " << int(shape_b));
                check(shaped_words<wtype>(shape_a, AL, this->random),
                      shaped_words<wtype>(shape_b, BL, this->random));
            }
    }
};
TYPED_TEST_SUITE(Basecases, WordTypes);

/// Runs a product into words with guards around them.
template <typename wtype, typename Multiply>
mpz_class guarded(upL_t length, Multiply multiply) {
    constexpr wtype guard = static_cast<wtype>(0x1234567);
    std::vector<wtype> t(length + 2, guard);
    multiply(t.data() + 1);
    EXPECT_TRUE(t.front() == guard && t.back() == guard);
    return to_mpz(t.data() + 1, length);
}

/// The products by one level of the code, within the scratch that it foretells.
template <typename wtype>
void expect_karatsuba(const std::vector<wtype>& a, const std::vector<wtype>& b) {
    const upL_t AL = a.size(), BL = b.size();
    const Scratch mul_memory(mul_scratch<wtype>(AL, BL) * sizeof(wtype)),
        sqr_memory(sqr_scratch<wtype>(AL) * sizeof(wtype));
    auto* const scratch = mul_memory.words<wtype>();
    const mpz_class product = product_of(a, b);
    const auto multiply = [&](wtype* T) { mulK(T, a.data(), AL, b.data(), BL, scratch); };
    const auto swapped = [&](wtype* T) { mulK(T, b.data(), BL, a.data(), AL, scratch); };
    const auto square = [&](wtype* T) { sqrK(T, a.data(), AL, sqr_memory.words<wtype>()); };
    ASSERT_EQ(guarded<wtype>(AL + BL, multiply), product);
    ASSERT_EQ(guarded<wtype>(AL + BL, swapped), product);
    ASSERT_EQ(guarded<wtype>(2 * AL, square), product_of(a, a));
    ASSERT_TRUE(mul_memory.intact() && sqr_memory.intact());
}

TYPED_TEST(Basecases, SchoolbookOfAllShortLengths) {
    using wtype = TypeParam;
    for (upL_t AL = 1; AL <= 30; AL++)
        for (upL_t BL = 1; BL <= 30; BL++)
            this->for_operands(AL, BL, [&](const auto& a, const auto& b) {
                const auto multiply = [&](wtype* T) { mulB(T, a.data(), AL, b.data(), BL); };
                ASSERT_EQ(guarded<wtype>(AL + BL, multiply), product_of(a, b));
                if (AL != BL) return;
                const auto square = [&](wtype* T) { sqrB(T, a.data(), AL); };
                ASSERT_EQ(guarded<wtype>(2 * AL, square), product_of(a, a));
            });
}

// Limbs that end anywhere in a vector, groups of columns cut at each place, at addresses of every kind, and
// products that stand on their operands.
TEST(BasecaseVectors, AllLengths) {
    kernels::Mul52* const multiply = mul52_kernel();
    if (!multiply) GTEST_SKIP() << "no 52-bit multiply-adds here";
    constexpr upL_t MOST = kernels::MUL52_MOST_DIGITS;
    std::mt19937_64 random(52);
    for (upL_t n = 1; n <= MOST; n++)
        for (upL_t m : {upL_t(1), n % 29 + 1, n * 37 % MOST + 1, MOST + 1 - n}) {
            const Shape shape_a = ALL_SHAPES[random() % 5], shape_b = ALL_SHAPES[random() % 5];
            const auto a = shaped_words<std::uint64_t>(shape_a, n, random),
                       b = shaped_words<std::uint64_t>(shape_b, m, random);
            std::vector<unsigned char> bytes(8 * (n + m) + 16, 0x5a);
            unsigned char* const T = bytes.data() + random() % 8 + 1;
            const bool on_a = random() % 3 == 0;
            if (on_a) std::memcpy(T, a.data(), 8 * n);
            multiply(T, on_a ? static_cast<const void*>(T) : a.data(), n, b.data(), m);
            std::vector<std::uint64_t> product(n + m);
            std::memcpy(product.data(), T, 8 * (n + m));
            ASSERT_EQ(to_mpz(product.data(), n + m), product_of(a, b))
                << n << " x " << m << " digits, shapes " << int(shape_a) << " " << int(shape_b);
            ASSERT_TRUE(T[-1] == 0x5a && T[8 * (n + m)] == 0x5a);
        }
}

// Thresholds, one level and several, halves of equal and of unequal length.
TYPED_TEST(Basecases, Karatsuba) {
    using wtype = TypeParam;
    const upL_t mul_from = KaratsubaThresholds<wtype>::mul, sqr_from = KaratsubaThresholds<wtype>::sqr;
    const auto check = [](const auto& a, const auto& b) { expect_karatsuba<wtype>(a, b); };
    for (upL_t L : {upL_t(1), mul_from - 1, mul_from, mul_from + 1, sqr_from - 1, sqr_from, sqr_from + 1,
                    2 * mul_from - 1, 2 * mul_from, upL_t(77), upL_t(78), upL_t(129), upL_t(512)})
        this->for_operands(L, L, check);
    for (upL_t BL : {upL_t(1), mul_from - 1, mul_from, mul_from + 4, upL_t(55)})
        for (upL_t AL : {BL + 1, 2 * BL - 1, 2 * BL, 2 * BL + 1, 3 * BL, 4 * BL + mul_from, 5 * BL + 1})
            this->for_operands(AL, BL, check);
    // Equal halves: their difference is zero.
    auto a = shaped_words<wtype>(Shape::random, 40, this->random);
    a.insert(a.end(), a.begin(), a.begin() + 40);
    expect_karatsuba(a, shaped_words<wtype>(Shape::random, 80, this->random));
}

// A descriptor of C words holds the product of two operands of C words and the work on it.
TYPED_TEST(Basecases, PlannedSizesCoverEveryLength) {
    using wtype = TypeParam;
    upL_t needed = 0;
    for (upL_t C = 1; C <= BKT_MAX_BITS / this->W; C += C < 400 ? 1 : 97) {
        EXPECT_GE(bkt_array_bytes<wtype>(C), 8 + C * sizeof(wtype));
        for (upL_t BL = 1; BL <= C; BL++)
            needed = std::max({needed, C + BL + mul_scratch<wtype>(C, BL), 2 * BL + sqr_scratch<wtype>(BL)});
        const upL_t planned = bkt_scratch_bytes<wtype>(C);
        ASSERT_GE(planned, align_bytes(needed * sizeof(wtype))) << C;
        EXPECT_EQ(planned % 128, 0u);
        // A partial product cuts its result and its work area separately.
        for (upL_t BL = 1; BL < C; BL++)
            ASSERT_GE(planned, align_bytes(C * sizeof(wtype)) +
                                   align_bytes(mul_scratch<wtype>(C - BL, BL) * sizeof(wtype)));
    }
    BufferSizes sizes;
    const upL_t total = BktAlgorithm<wtype>().max_buffer_sizes(sizes, 4992 / this->W, 1);
    EXPECT_EQ(total, sizes.scratch_bytes + 2 * sizes.array_bytes);
    EXPECT_EQ(sizes.array_bytes, 640u);
}

TEST(BasecaseSizes, LongestOperandsOfAMemory) {
    for (auto [bytes, words] : {std::pair<upL_t, upL_t>{0, 1},
                                {24 * 22, 22},
                                {40 * 23 + 8 * 24 - 1, 22},
                                {40 * 23 + 8 * 24, 23},
                                {1 << 20, 512}})
        EXPECT_EQ(bkt_largest_operand(bytes), words) << bytes;
}

}  // namespace
}  // namespace lumo
