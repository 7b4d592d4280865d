// The transforms as the tables use them: limits, faults.
#include <cfenv>

#include "death_output.h"
#include "failures.h"
#include "faulty_machine.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "ntt_support.h"

namespace lumo::testing {
namespace {

template <typename Transform>
class NttTransforms : public ::testing::Test {};
using Transforms = ::testing::Types<Vt3Transform, N64Transform, VstTransform, C17Transform>;
TYPED_TEST_SUITE(NttTransforms, Transforms);

TYPED_TEST(NttTransforms, LastLengthIsTheLimit) {
    const NttAlgorithm<std::uint64_t, TypeParam> algorithm;
    const auto sizes = TypeParam::sizes();
    EXPECT_GE(sizes.back().bits(), algorithm.max_bits);
    EXPECT_LT(sizes[sizes.size() - 2].bits(), algorithm.max_bits);
    EXPECT_EQ(&TypeParam::size_for(algorithm.max_bits), &sizes.back());
    EXPECT_THROW(TypeParam::size_for(algorithm.max_bits + 1), LimitExceededException);
    // CRT_mulp() asks for words by 32.
    for (const auto& size : sizes) ASSERT_EQ(size.bits() % 2048, 0u) << describe(size);
    BufferSizes large;
    EXPECT_GT(algorithm.max_buffer_sizes(large, algorithm.max_bits / 64, 4), algorithm.max_bits / 8);
}

TEST(Vt3AlgorithmDeathTest, DoublesNeedRoundingToNearest) {
    if (!select_vt3_kernels(&kernels::vt3_kernels_avx2)) GTEST_SKIP() << "no AVX2 here";
    SetGuard guard(&kernels::vt3_kernels_avx2);
    const Words a = operand(Pattern::random, 20000, 128, 1);
    Words t(40000);
    const NttAlgorithm<std::uint64_t, Vt3Transform> vt3;
    Scratch scratch(vt3.max_buffer_size(40000, 1));
    EXPECT_DEATH(dying([&] {
                     std::fesetround(FE_UPWARD);
                     vt3.sqr(scratch.context(), t.data(), a.data(), a.size());
                 }),
                 "The FPU Control Word has been corrupted.");
}

// A bit of an image, for products whole and wrapped. At the second length a coefficient of VT3 has no bit in
// its highest word.
TYPED_TEST(NttTransforms, AWrongResidueIsNoticed) {
    const NttAlgorithm<std::uint64_t, TypeParam> algorithm;
    for (const auto* set : runnable_sets()) {
        SetGuard guard(set);
        for (const upL_t length : {25000, 38900}) {
            TransformHolder<std::uint64_t> holder;
            algorithm.params(holder, length, 1);
            const upL_t C = holder->words();
            Scratch f(holder->array_bytes()), out(holder->array_bytes()), work(holder->scratch_bytes());
            const MultiplyContext ctx = work.context();
            std::mt19937_64 random(9);
            Words t(C);
            for (int i = 0; i < 4; i++) {
                const Words a = operand(Pattern::random, i % 2 ? C : C / 2, 128, unsigned(i));
                holder->forward(ctx, a.data(), a.size(), f.data());
                const auto product = [&] {
                    holder->inverse_fsqr(ctx, t.data(), i % 3 * 100, C - 50, out.data(), f.data());
                };
                EXPECT_EQ(failure_of(product), "");
                static_cast<std::uint64_t*>(f.data())[random() % (holder->array_bytes() / 16)] ^= 1 << 20;
                EXPECT_EQ(failure_of(product), "ConvolutionFailedException " + std::string(algorithm.tag) +
                                                   ": Coefficient is too large.")
                    << (set ? set->name : "") << " " << length;
            }
        }
    }
}

/// The kernels in use, but for two pieces of a digit that change places: another operand than was summed.
kernels::Vt3Kernels mixing_kernels() {
    static const kernels::Vt3Kernels* const honest = &vt3_kernels();
    kernels::Vt3Kernels table = *honest;
    table.cut = [](const kernels::Vt3Shape& shape, std::uint64_t* pieces, const unsigned char* a,
                   std::size_t size, std::uint64_t place, std::uint64_t row_bytes, std::size_t rows) {
        const std::uint64_t sum = honest->cut(shape, pieces, a, size, place, row_bytes, rows);
        std::swap(pieces[0], pieces[kernels::VT3_COLUMNS]);
        return sum;
    };
    return table;
}

// What no coefficient tells: the sums of the words do. An image whose own sum is damaged, an operand that is
// another one by the time its residues are taken.
TYPED_TEST(NttTransforms, SumsOfWordsAreCompared) {
    const NttAlgorithm<std::uint64_t, TypeParam> algorithm;
    const std::string refused = "ConvolutionFailedException " + std::string(algorithm.tag) +
                                ": Convolution failed the modular check.";
    Words a = operand(Pattern::random, 12000, 128, 3), t(24000);
    TransformHolder<std::uint64_t> holder;
    algorithm.params(holder, t.size(), 1);
    Scratch f(holder->array_bytes()), out(holder->array_bytes()), work(holder->scratch_bytes());
    holder->forward(work.context(), a.data(), a.size(), f.data());
    static_cast<std::uint64_t*>(f.data())[(holder->array_bytes() - ALIGNMENT_BYTES) / 8] ^= 2;
    EXPECT_EQ(failure_of(
                  [&] { holder->inverse_fsqr(work.context(), t.data(), 0, t.size(), out.data(), f.data()); }),
              refused);
    const Scratch whole(algorithm.max_buffer_size(t.size(), 2));
    const kernels::Vt3Kernels mixing = mixing_kernels();
    SetGuard guard(std::is_base_of_v<Vt3Transform, TypeParam> ? &mixing : nullptr);
    // C17 takes other kernels for every other prime, and residues of two operands.
    const std::string mixed = std::is_same_v<TypeParam, C17Transform>
                                  ? "ConvolutionFailedException C17: Coefficient is too large."
                                  : refused;
    FaultyMachine<std::uint64_t> machine(a[5000]);
    EXPECT_EQ(failure_of([&] { algorithm.sqr(whole.context(2, machine), t.data(), a.data(), a.size()); }),
              mixed);
    const Words b = operand(Pattern::random, 12000, 128, 4);
    FaultyMachine<std::uint64_t> once_more(a[5000]);
    EXPECT_EQ(failure_of([&] {
                  algorithm.mul(whole.context(2, once_more), t.data(), a.data(), a.size(), b.data(),
                                b.size());
              }),
              mixed);
}

// In a full ring what wraps round makes all words overflow once more.
TYPED_TEST(NttTransforms, MinusOneSquaredIsOne) {
    TransformHolder<std::uint64_t> holder;
    NttAlgorithm<std::uint64_t, TypeParam>().params(holder, 24000, 1);
    Words a(holder->words(), ~std::uint64_t(0)), t(a.size()), one(a.size());
    a[0]--, one[0] = 1;
    Scratch f(holder->array_bytes()), out(holder->array_bytes()), work(holder->scratch_bytes());
    holder->forward(work.context(), a.data(), a.size(), f.data());
    holder->inverse_fsqr(work.context(), t.data(), 0, t.size(), out.data(), f.data());
    EXPECT_TRUE(t == one);
}

// Lengths at which a product by GMP would take too long are told by residues. Images leave the caches here.
TYPED_TEST(NttTransforms, LongProductsHaveTheRightResidues) {
    const NttAlgorithm<std::uint64_t, TypeParam> algorithm;
    const upL_t AL = 1300000, BL = 700000;
    const Words a = operand(Pattern::random, AL, 64, 1), b = operand(Pattern::random, BL, 64, 2);
    Words t(AL + BL);
    PushPoolParallelizer pool(2, false, 1);
    const Scratch scratch(algorithm.max_buffer_size(AL + BL, 16));
    const bool by_kernels = std::is_base_of_v<Vt3Transform, TypeParam>;
    for (const auto* set : by_kernels ? runnable_sets() : std::vector<const kernels::Vt3Kernels*>{nullptr}) {
        SetGuard guard(set);
        algorithm.mul(scratch.context(16, pool), t.data(), a.data(), AL, b.data(), BL);
        EXPECT_TRUE(scratch.intact());
        EXPECT_TRUE(agrees_by_residues(t, a, b)) << (set ? set->name : "");
    }
}

}  // namespace
}  // namespace lumo::testing
