// Schoolbook, Karatsuba and the algorithm made of them, against GMP.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumo/multiply/basecase/basecase.h"
#include "lumo/multiply/basecase/bkt_algorithm.h"
#include "lumo/multiply/basecase/bkt_sizes.h"
#include "lumo/multiply/basecase/karatsuba.h"
#include "products.h"

namespace lumo {
namespace {

using namespace testing;
using namespace Basecase;

template <typename wtype>
class Basecases : public ::testing::Test {
 protected:
    using Operand = std::vector<wtype>;
    std::mt19937_64 random{31337};

    /// Every pair of shapes that can differ.
    template <typename Check>
    void for_operands(upL_t AL, upL_t BL, Check check) {
        for (Shape shape_a : ALL_SHAPES)
            for (Shape shape_b : ALL_SHAPES) {
                if (::testing::Test::HasFatalFailure()) return;
                SCOPED_TRACE(::testing::Message() << AL << " x " << BL << " words, shapes " << int(shape_a)
                                                  << " " << int(shape_b));
                check(shaped_words<wtype>(shape_a, AL, random), shaped_words<wtype>(shape_b, BL, random));
            }
    }
};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(Basecases, WordTypes);

/// Runs a product into words with guards around them.
template <typename wtype, typename Multiply>
mpz_class guarded(upL_t length, Multiply multiply) {
    constexpr wtype guard = static_cast<wtype>(0x1234567);
    std::vector<wtype> t(length + 2, guard);
    multiply(t.data() + 1);
    EXPECT_EQ(t.front(), guard);
    EXPECT_EQ(t.back(), guard);
    return to_mpz(t.data() + 1, length);
}

TYPED_TEST(Basecases, SchoolbookOfAllShortLengths) {
    using wtype = TypeParam;
    for (upL_t AL = 1; AL <= 30; AL++)
        for (upL_t BL = 1; BL <= 30; BL++)
            this->for_operands(AL, BL, [&](const auto& a, const auto& b) {
                const mpz_class t =
                    guarded<wtype>(AL + BL, [&](wtype* T) { mulB(T, a.data(), AL, b.data(), BL); });
                ASSERT_EQ(t, product_of(a, b));
                if (AL != BL) return;
                const mpz_class square = guarded<wtype>(2 * AL, [&](wtype* T) { sqrB(T, a.data(), AL); });
                ASSERT_EQ(square, product_of(a, a));
            });
}

// Thresholds, one level and several, halves of equal and of unequal length, within the scratch foretold.
TYPED_TEST(Basecases, KaratsubaOfEqualLengths) {
    using wtype = TypeParam;
    const upL_t mul_from = KaratsubaThresholds<wtype>::mul, sqr_from = KaratsubaThresholds<wtype>::sqr;
    for (upL_t L : {upL_t(1), mul_from - 1, mul_from, mul_from + 1, sqr_from - 1, sqr_from, sqr_from + 1,
                    2 * mul_from - 1, 2 * mul_from, upL_t(77), upL_t(78), upL_t(129), upL_t(512)})
        this->for_operands(L, L, [&](const auto& a, const auto& b) {
            GuardedScratch mul_memory(mul_scratch<wtype>(L, L) * sizeof(wtype));
            const mpz_class t = guarded<wtype>(2 * L, [&](wtype* T) {
                elmK(T, a.data(), b.data(), L, static_cast<wtype*>(mul_memory.data()));
            });
            ASSERT_EQ(t, product_of(a, b));
            ASSERT_TRUE(mul_memory.intact());
            GuardedScratch sqr_memory(sqr_scratch<wtype>(L) * sizeof(wtype));
            const mpz_class square = guarded<wtype>(
                2 * L, [&](wtype* T) { sqrK(T, a.data(), L, static_cast<wtype*>(sqr_memory.data())); });
            ASSERT_EQ(square, product_of(a, a));
            ASSERT_TRUE(sqr_memory.intact());
        });
}

TYPED_TEST(Basecases, KaratsubaWithEqualHalves) {
    using wtype = TypeParam;
    const auto half = shaped_words<wtype>(Shape::random, 40, this->random);
    auto a = half;
    a.insert(a.end(), half.begin(), half.end());
    const auto b = shaped_words<wtype>(Shape::random, 80, this->random);
    std::vector<wtype> scratch(std::max(mul_scratch<wtype>(80, 80), sqr_scratch<wtype>(80))), t(160);
    elmK(t.data(), a.data(), b.data(), 80, scratch.data());
    EXPECT_EQ(to_mpz(t.data(), 160), product_of(a, b));
    sqrK(t.data(), a.data(), 80, scratch.data());
    EXPECT_EQ(to_mpz(t.data(), 160), product_of(a, a));
}

TYPED_TEST(Basecases, KaratsubaOfUnequalLengths) {
    using wtype = TypeParam;
    const upL_t from = KaratsubaThresholds<wtype>::mul;
    for (upL_t BL : {upL_t(1), from - 1, from, from + 4, upL_t(55)})
        for (upL_t AL : {BL + 1, 2 * BL - 1, 2 * BL, 2 * BL + 1, 3 * BL, 4 * BL + from, 5 * BL + 1}) {
            if (AL < BL) continue;
            this->for_operands(AL, BL, [&](const auto& a, const auto& b) {
                GuardedScratch memory(mul_scratch<wtype>(AL, BL) * sizeof(wtype));
                auto* scratch = static_cast<wtype*>(memory.data());
                for (bool swapped : {false, true}) {
                    const mpz_class t = guarded<wtype>(AL + BL, [&](wtype* T) {
                        swapped ? mulK(T, b.data(), BL, a.data(), AL, scratch)
                                : mulK(T, a.data(), AL, b.data(), BL, scratch);
                    });
                    ASSERT_EQ(t, product_of(a, b));
                }
                ASSERT_TRUE(memory.intact());
            });
        }
}

// A descriptor of C words holds the product of two operands of C words and the work on it.
TYPED_TEST(Basecases, PlannedSizesCoverEveryLength) {
    using wtype = TypeParam;
    const upL_t longest = BKT_MAX_BITS / WordTraits<wtype>::bits;
    upL_t needed = 0;
    for (upL_t C = 1; C <= longest; C += C < 400 ? 1 : 97) {
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
    const upL_t total = BktAlgorithm<wtype>().max_buffer_sizes(sizes, 4992 / WordTraits<wtype>::bits, 1);
    EXPECT_EQ(total, sizes.scratch_bytes + 2 * sizes.array_bytes);
    EXPECT_EQ(sizes.array_bytes, 640u);
}

TYPED_TEST(Basecases, AlgorithmStaysWithinItsSizes) {
    using wtype = TypeParam;
    const BktAlgorithm<wtype> bkt;
    for (auto [AL, BL] :
         {std::pair<upL_t, upL_t>{1, 1}, {2, 1}, {30, 30}, {78, 78}, {155, 1}, {131, 25}, {512, 512}})
        this->for_operands(AL, BL, [&, AL = AL, BL = BL](const auto& a, const auto& b) {
            const upL_t n = AL + BL;
            GuardedScratch memory(bkt.max_buffer_size(n, 1));
            const auto ctx = memory.context();
            ASSERT_EQ(guarded<wtype>(n, [&](wtype* T) { bkt.mul(ctx, T, a.data(), AL, b.data(), BL); }),
                      product_of(a, b));
            for (auto [s, L] : {std::pair<upL_t, upL_t>{0, n}, {n / 2, n}, {0, n / 2}, {n / 3, n - n / 3}}) {
                ASSERT_EQ(guarded<wtype>(L - s,
                                         [&, s = s, L = L](wtype* T) {
                                             bkt.mul_partial(ctx, T, s, L, a.data(), AL, b.data(), BL);
                                         }),
                          product_window(a, b, s, L));
                if (AL != BL) continue;
                ASSERT_EQ(
                    guarded<wtype>(
                        L - s, [&, s = s, L = L](wtype* T) { bkt.sqr_partial(ctx, T, s, L, a.data(), AL); }),
                    product_window(a, a, s, L));
            }
            ASSERT_TRUE(memory.intact());
        });
}

TYPED_TEST(Basecases, DescriptorMultipliesModuloItsLength) {
    using wtype = TypeParam;
    const BktAlgorithm<wtype> bkt;
    for (upL_t C : {1, 2, 33, 78, 156})
        for (auto [AL, BL] :
             {std::pair<upL_t, upL_t>{C, C}, {C / 2, C - C / 2}, {C, 1}, {C / 2 + 1, C / 2 + 1}})
            this->for_operands(AL, BL, [&, AL = AL, BL = BL](const auto& a, const auto& b) {
                TransformHolder<wtype> transform;
                bkt.params(transform, C, 1);
                ASSERT_EQ(transform->words(), C);
                GuardedScratch memory(transform->scratch_bytes()), f(transform->array_bytes()),
                    g(transform->array_bytes());
                transform->forward(memory.context(), a.data(), AL, f.data());
                transform->forward(memory.context(), b.data(), BL, g.data());
                std::vector<wtype> t(C);
                const mpz_class modulus = (mpz_class(1) << transform->length_bits()) - 1;
                transform->inverse_fmul(memory.context(), t.data(), 0, C, g.data(), f.data(), g.data());
                const mpz_class x = product_of(a, b), all = to_mpz(t.data(), C);
                ASSERT_EQ(mpz_class(all - x) % modulus, 0) << C;
                if (AL + BL <= C) {
                    ASSERT_EQ(all, x);
                }
                transform->inverse_fmul(memory.context(), t.data(), C / 3, C - C / 4, f.data(), f.data(),
                                        g.data());
                mpz_class window = all >> (C / 3 * WordTraits<wtype>::bits);
                mpz_fdiv_r_2exp(window.get_mpz_t(), window.get_mpz_t(),
                                (C - C / 4 - C / 3) * WordTraits<wtype>::bits);
                ASSERT_EQ(to_mpz(t.data(), C - C / 4 - C / 3), window);
                transform->inverse_fsqr(memory.context(), t.data(), 0, C, f.data(), f.data());
                ASSERT_EQ(mpz_class(to_mpz(t.data(), C) - product_of(a, a)) % modulus, 0);
                ASSERT_TRUE(memory.intact() && f.intact() && g.intact());
            });
}

TYPED_TEST(Basecases, DescriptorRefusesLongOperandsAndForeignImages) {
    using wtype = TypeParam;
    const BktAlgorithm<wtype> bkt;
    TransformHolder<wtype> ten, also_ten, eleven;
    bkt.params(ten, 10, 1);
    bkt.params(also_ten, 10, 4);
    bkt.params(eleven, 11, 1);
    EXPECT_TRUE(ten->same_transform(*also_ten));
    EXPECT_FALSE(ten->same_transform(*eleven));
    const std::vector<wtype> a(11, 1);
    GuardedScratch f(ten->array_bytes());
    EXPECT_THROW(ten->forward({}, a.data(), 11, f.data()), ConvolutionTooSmallException);
}

}  // namespace
}  // namespace lumo
