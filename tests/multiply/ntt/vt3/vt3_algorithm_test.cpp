// "VT3" as the tables use it: sizes, forms of the product, limits, faults.
#include <cfenv>

#include "death_output.h"
#include "vt3_support.h"

namespace lumo::testing {
namespace {

const NttAlgorithm<std::uint64_t, Vt3Family> vt3;

TEST(Vt3Algorithm, NamesItselfAndRefusesWhatIsTooLong) {
    EXPECT_STREQ(vt3.tag, "VT3");
    EXPECT_STREQ(vt3.name, "VST Algorithm v3");
    EXPECT_STREQ(vt3.version, "VSTv3");
    EXPECT_STREQ(vt3.description, vt3.name);
    EXPECT_EQ(vt3.max_bits, upL_t(600) << 39);
    EXPECT_EQ(vt3_sizes().back().bits(), vt3.max_bits);
    EXPECT_EQ(&vt3_size_for(vt3.max_bits), &vt3_sizes().back());
    EXPECT_THROW(vt3_size_for(vt3.max_bits + 1), LimitExceededException);
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
