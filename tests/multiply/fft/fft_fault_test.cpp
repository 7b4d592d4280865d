// Faults between passes are found, and a changed rounding mode ends the program.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cmath>
#include <limits>

#include "death_output.h"
#include "fft_support.h"
#include "lumo/foundation/parallel/pushpool.h"

using namespace lumo;
using namespace lumo::test;

namespace {

using Descriptor = FftDescriptor<std::uint64_t>;

/// Overwrites or flips bits of one double after one pass.
class Saboteur final : public FftProbe {
 public:
    FftPass pass;
    upL_t place;
    std::uint64_t flip = 0;
    double value = 0;
    Saboteur(FftPass when, upL_t where) : pass(when), place(where) {}
    void after(FftPass done, double* array, upL_t doubles) override {
        if (done != pass) return;
        double& victim = array[place % doubles];
        if (flip) {
            std::uint64_t bits;
            std::memcpy(&bits, &victim, 8);
            bits ^= flip;
            std::memcpy(&victim, &bits, 8);
        } else {
            victim = value;
        }
    }
};

Words square(Descriptor& d, FftProbe* probe, const MultiplyContext& ctx) {
    const Words a = operand(Pattern::random, d.words() / 2, d.size().b, 21);
    Scratch array(d.array_bytes());
    Words t(d.words());
    d.observe(probe);
    d.forward(ctx, a.data(), a.size(), array.data());
    d.inverse_fsqr(ctx, t.data(), 0, t.size(), array.data(), array.data());
    return t;
}

const FftPass PASSES[] = {FftPass::first, FftPass::forward, FftPass::inverse};

}  // namespace

TEST(FftFaults, ValuesThatAreNoNumbersAreFound) {
    const KernelGuard guard;
    for (KernelSet set : {KernelSet::portable, KernelSet::avx2, KernelSet::avx512}) {
        if (!select_kernels(set)) continue;
        for (upL_t bits : {upL_t(10240), upL_t(147456)}) {
            ensure_fft_tables(bits);
            Descriptor d(bits);
            Scratch scratch(d.scratch_bytes());
            for (FftPass pass : PASSES)
                for (double value : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e18}) {
                    Saboteur saboteur(pass, 1234567);
                    saboteur.value = value;
                    EXPECT_THROW(square(d, &saboteur, scratch.context()), ConvolutionFailedException)
                        << fft_kernels().name << " pass " << int(pass) << " value " << value;
                }
        }
    }
}

TEST(FftFaults, AFlippedBitIsFoundOrHarmless) {
    ensure_fft_tables(65536);
    Descriptor d(65536);
    Scratch scratch(d.scratch_bytes());
    const Words expected = square(d, nullptr, scratch.context());
    int found = 0, total = 0;
    for (FftPass pass : PASSES)
        for (unsigned bit = 0; bit < 64; bit += 3) {
            Saboteur saboteur(pass, 97 * bit + 5);
            saboteur.flip = std::uint64_t(1) << bit;
            total++;
            try {
                EXPECT_EQ(square(d, &saboteur, scratch.context()), expected)
                    << "pass " << int(pass) << " bit " << bit;
            } catch (const ConvolutionFailedException& e) {
                EXPECT_EQ(e.message, "Coefficient is too large.");
                found++;
            }
        }
    EXPECT_GT(found, 10);
    EXPECT_GT(total - found, 10) << "low bits are noise that rounding removes";
}

TEST(FftFaults, FaultsOnOtherThreadsReachTheCaller) {
    const auto pool = make_pushpool(2);
    ensure_fft_tables(1835008);
    Descriptor d(1835008);
    Scratch scratch(d.scratch_bytes());
    Saboteur saboteur(FftPass::inverse, d.size().points() - 3);
    saboteur.value = std::nan("");
    EXPECT_THROW(square(d, &saboteur, scratch.context(2, *pool)), ConvolutionFailedException);
    EXPECT_NO_THROW(square(d, nullptr, scratch.context(2, *pool)));
}

TEST(FftFaults, ErrorsOfHonestProductsAreSmall) {
    for (upL_t bits : {upL_t(2048), upL_t(65536), upL_t(348160), upL_t(1474560)}) {
        ensure_fft_tables(bits);
        Descriptor d(bits);
        Scratch scratch(d.scratch_bytes());
        FftProbe probe;
        square(d, &probe, scratch.context());
        EXPECT_GT(probe.largest_error, 0.0);
        EXPECT_LT(probe.largest_error, 0.02) << bits;
    }
}

TEST(FftFaults, AChangedRoundingModeEndsTheProgram) {
    ensure_fft_tables(2048);
    Descriptor d(2048);
    Scratch scratch(d.scratch_bytes());
    EXPECT_EXIT(dying([&] {
                    _MM_SET_ROUNDING_MODE(_MM_ROUND_TOWARD_ZERO);
                    square(d, nullptr, scratch.context());
                }),
                testing::ExitedWithCode(1), "The FPU Control Word has been corrupted.");
}

TEST(FftFaults, MissingTablesEndTheProgram) {
    release_fft_tables();
    EXPECT_DEATH(dying([] { Descriptor d(2048); }), "Twiddle tables are too short.");
}
