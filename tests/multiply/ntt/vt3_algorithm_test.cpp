// "VT3" as the tables use it: sizes, forms of the product, limits, faults.
#include <cfenv>

#include "death_output.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "vt3_support.h"

namespace lumo::testing {
namespace {

const Vt3Algorithm<std::uint64_t> vt3;

template <typename wtype>
std::vector<wtype> words_of(const Words& a, upL_t length) {
    std::vector<wtype> words(length);
    std::memcpy(words.data(), a.data(), length * sizeof(wtype));
    return words;
}

template <typename wtype>
class Vt3Forms : public ::testing::Test {};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(Vt3Forms, WordTypes);

TYPED_TEST(Vt3Forms, AgreeWithinTheSizesAskedFor) {
    using wtype = TypeParam;
    const Vt3Algorithm<wtype> algorithm;
    constexpr upL_t W = WordTraits<wtype>::bits;
    std::mt19937_64 random(W);
    PushPoolParallelizer pool(2, false, 1);
    for (upL_t bits : {1474592, 2000000, 2600032}) {
        const upL_t total = bits / W, AL = total / 2 + random() % 1000, BL = total - AL;
        const Words a64 = operand(Pattern::random, AL, 128, 1), b64 = operand(Pattern::random, BL, 128, 2);
        const auto A = words_of<wtype>(a64, AL), B = words_of<wtype>(b64, BL);
        const auto product = [&](const std::vector<wtype>& x, const std::vector<wtype>& y) {
            Words x64((x.size() * sizeof(wtype) + 7) / 8), y64((y.size() * sizeof(wtype) + 7) / 8);
            std::memcpy(x64.data(), x.data(), x.size() * sizeof(wtype));
            std::memcpy(y64.data(), y.data(), y.size() * sizeof(wtype));
            return words_of<wtype>(exact_product(x64, y64), x.size() + y.size());
        };
        const auto exact = product(A, B), square = product(A, A);
        for (upL_t tds : {1, 2, 7}) {
            algorithm.ensure_tables(2 * AL);
            BufferSizes sizes;
            Scratch full(algorithm.max_buffer_sizes(sizes, 2 * AL, tds));
            Scratch least(algorithm.max_buffer_size(2 * AL, tds));
            EXPECT_LT(algorithm.max_buffer_size(2 * AL, tds), sizes.total());
            std::vector<wtype> t(total), u(2 * AL);
            const upL_t s = random() % total, L = s + random() % (total - s);
            std::vector<wtype> window(L - s);
            const std::vector<wtype> expected(exact.begin() + long(s), exact.begin() + long(L));
            for (Scratch* scratch : {&full, &least}) {
                const MultiplyContext ctx = scratch->context(tds, pool);
                algorithm.mul(ctx, t.data(), A.data(), AL, B.data(), BL);
                ASSERT_EQ(t, exact);
                algorithm.mul_partial(ctx, window.data(), s, L, A.data(), AL, B.data(), BL);
                ASSERT_EQ(window, expected);
                algorithm.mul_small(ctx, window.data(), s, L, B.data(), BL, A.data(), AL);
                ASSERT_EQ(window, expected);
                algorithm.sqr(ctx, u.data(), A.data(), AL);
                ASSERT_EQ(u, square);
                algorithm.sqr_partial(ctx, window.data(), s, L, A.data(), AL);
                ASSERT_EQ(window, std::vector<wtype>(square.begin() + long(s), square.begin() + long(L)));
                EXPECT_TRUE(scratch->intact());
            }
        }
    }
}

TEST(Vt3Algorithm, NamesItselfAndRefusesWhatIsTooLong) {
    EXPECT_STREQ(vt3.tag, "VT3");
    EXPECT_STREQ(vt3.name, "VST Algorithm v3");
    EXPECT_STREQ(vt3.version, "VSTv3");
    EXPECT_STREQ(vt3.description, vt3.name);
    EXPECT_EQ(vt3.max_bits, upL_t(600) << 39);
    EXPECT_EQ(vt3_sizes().back().bits(), vt3.max_bits);
    EXPECT_EQ(&vt3_size_for(vt3.max_bits), &vt3_sizes().back());
    EXPECT_THROW(vt3_size_for(vt3.max_bits + 1), LimitExceededException);

    TransformHolder<std::uint64_t> holder;
    vt3.params(holder, 30000, 1);
    ASSERT_GE(holder->words(), 30000u);
    Scratch image(holder->array_bytes()), work(holder->scratch_bytes());
    const Words a = operand(Pattern::ones, holder->words() + 1, 128, 0);
    EXPECT_THROW(holder->forward(work.context(), a.data(), a.size(), image.data()),
                 ConvolutionTooSmallException);
    Scratch little(work.context().scratch_bytes / 256 * 128);
    EXPECT_THROW(holder->forward(little.context(), a.data(), a.size() - 1, image.data()),
                 BufferTooSmallException);
}

TEST(Vt3Algorithm, LimitsOfRowsLeadToTheNextRow) {
    for (upL_t bits : {1500000, 2500000}) {
        const upL_t limit = vt3_size_for(bits).bits() / 64;
        for (upL_t total : {limit - 1, limit, limit + 1}) {
            const Words a = operand(Pattern::ones, total / 2, 128, 0),
                        b = operand(Pattern::alternating, total - total / 2, 128, 0);
            Scratch scratch(vt3.max_buffer_size(total, 1));
            Words t(total);
            vt3.mul(scratch.context(), t.data(), a.data(), a.size(), b.data(), b.size());
            EXPECT_EQ(t, exact_product(a, b)) << total;
        }
    }
}

TEST(Vt3Algorithm, HeldImagesServeSeveralProducts) {
    TransformHolder<std::uint64_t> holder, other;
    vt3.params(holder, 25000, 2);
    vt3.params(other, 50000, 2);
    EXPECT_TRUE(holder->same_transform(*holder));
    EXPECT_FALSE(holder->same_transform(*other));
    const upL_t half = holder->words() / 2;
    const Words a = operand(Pattern::random, half, 128, 1), b = operand(Pattern::random, half, 128, 2);
    Scratch f(holder->array_bytes()), g(holder->array_bytes()), out(holder->array_bytes()),
        work(holder->scratch_bytes());
    const MultiplyContext ctx = work.context();
    holder->forward(ctx, a.data(), half, f.data());
    holder->forward(ctx, b.data(), half, g.data());
    Words t(2 * half);
    holder->inverse_fsqr(ctx, t.data(), 0, 2 * half, out.data(), f.data());
    EXPECT_EQ(t, exact_product(a, a));
    holder->inverse_fmul(ctx, t.data(), 0, 2 * half, out.data(), f.data(), g.data());
    EXPECT_EQ(t, exact_product(a, b));
    holder->inverse_fmul(ctx, t.data(), 0, 2 * half, f.data(), f.data(), g.data());
    EXPECT_EQ(t, exact_product(a, b));
}

TEST(Vt3AlgorithmDeathTest, DoublesNeedRoundingToNearest) {
    if (!select_vt3_kernels(&kernels::vt3_kernels_avx2)) GTEST_SKIP() << "no AVX2 here";
    SetGuard guard(&kernels::vt3_kernels_avx2);
    const Words a = operand(Pattern::random, 20000, 128, 1);
    Words t(40000);
    Scratch scratch(vt3.max_buffer_size(40000, 1));
    EXPECT_DEATH(dying([&] {
                     std::fesetround(FE_UPWARD);
                     vt3.sqr(scratch.context(), t.data(), a.data(), a.size());
                 }),
                 "The FPU Control Word has been corrupted.");
}

TEST(Vt3Algorithm, AWrongResidueIsNoticed) {
    TransformHolder<std::uint64_t> holder;
    vt3.params(holder, 25000, 1);
    const upL_t half = holder->words() / 2;
    const Words a = operand(Pattern::random, half, 128, 1);
    for (const auto* set : runnable_sets()) {
        SetGuard guard(set);
        vt3.params(holder, 25000, 1);
        Scratch f(holder->array_bytes()), out(holder->array_bytes()), work(holder->scratch_bytes());
        const MultiplyContext ctx = work.context();
        std::mt19937_64 random(9);
        Words t(2 * half);
        for (int i = 0; i < 8; i++) {
            holder->forward(ctx, a.data(), half, f.data());
            static_cast<std::uint64_t*>(f.data())[random() % (holder->array_bytes() / 16)] ^= 1 << 20;
            EXPECT_THROW(holder->inverse_fsqr(ctx, t.data(), 0, 2 * half, out.data(), f.data()),
                         ConvolutionFailedException)
                << set->name;
        }
    }
}

}  // namespace
}  // namespace lumo::testing
