// Faults between passes are found, and a changed rounding mode ends the program.
#include <gmock/gmock.h>
#include <xmmintrin.h>

#include <bit>
#include <cmath>
#include <limits>

#include "death_output.h"
#include "fft_support.h"
#include "lumo/foundation/parallel/pushpool.h"

namespace lumo::testing {
namespace {

/// Flips bits of one double after one pass, or overwrites it.
class Saboteur final : public FftProbe {
 public:
    Saboteur(FftPass when, upL_t where, std::uint64_t bits_to_flip, double new_value = 0)
        : pass(when), place(where), flip(bits_to_flip), value(new_value) {}
    void after(FftPass done, double* array, upL_t doubles) override {
        if (done != pass) return;
        double& victim = array[place % doubles];
        victim = flip ? std::bit_cast<double>(std::bit_cast<std::uint64_t>(victim) ^ flip) : value;
    }

 private:
    FftPass pass;
    upL_t place;
    std::uint64_t flip;
    double value;
};

Words square(FftBench& bench, FftProbe* probe, upL_t tds = 1,
             BasicParallelizer& pool = serial_parallelizer()) {
    const Words a = operand(Pattern::random, bench.words() / 2, bench.d.size().b, 21);
    const MultiplyContext ctx = bench.scratch.context(tds, pool);
    Words t(bench.words());
    bench.d.observe(probe);
    bench.d.forward(ctx, a.data(), a.size(), bench.first.data());
    bench.d.inverse_fsqr(ctx, t.data(), 0, t.size(), bench.first.data(), bench.first.data());
    return t;
}

const FftPass PASSES[] = {FftPass::first, FftPass::forward, FftPass::inverse};

TEST(FftFaults, ValuesThatAreNoNumbersAreFound) {
    for_kernel_sets([](KernelSet) {
        for (upL_t bits : {upL_t(10240), upL_t(147456)}) {
            FftBench bench(bits);
            for (FftPass pass : PASSES)
                for (double value : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e18}) {
                    Saboteur saboteur(pass, 1234567, 0, value);
                    EXPECT_THROW(square(bench, &saboteur), ConvolutionFailedException)
                        << fft_kernels().name << " pass " << int(pass) << " value " << value;
                }
        }
    });
    // On another thread, too.
    const auto pool = make_pushpool(2);
    FftBench bench(1835008);
    Saboteur saboteur(FftPass::inverse, bench.d.size().points() - 3, 0, std::nan(""));
    EXPECT_THROW(square(bench, &saboteur, 2, *pool), ConvolutionFailedException);
    EXPECT_NO_THROW(square(bench, nullptr, 2, *pool));
}

TEST(FftFaults, AFlippedBitIsFoundOrHarmless) {
    FftBench bench(65536);
    const Words expected = square(bench, nullptr);
    int found = 0, total = 0;
    for (FftPass pass : PASSES)
        for (unsigned bit = 0; bit < 64; bit += 3) {
            Saboteur saboteur(pass, 97 * bit + 5, std::uint64_t(1) << bit);
            total++;
            try {
                EXPECT_EQ(square(bench, &saboteur), expected) << "pass " << int(pass) << " bit " << bit;
            } catch (const ConvolutionFailedException& e) {
                EXPECT_THAT(e.message, ::testing::MatchesRegex("Coefficient is too large.\n    Error = .+\n"
                                                               "    Limit = 0.4375.+"));
                found++;
            }
        }
    EXPECT_GT(found, 10);
    EXPECT_GT(total - found, 10) << "low bits are noise that rounding removes";
}

TEST(FftFaults, ErrorsOfHonestProductsAreSmall) {
    for (upL_t bits : {upL_t(2048), upL_t(65536), upL_t(348160), upL_t(1474560)}) {
        FftBench bench(bits);
        FftProbe probe;
        square(bench, &probe);
        EXPECT_GT(probe.largest_error, 0.0);
        EXPECT_LT(probe.largest_error, 0.02) << bits;
    }
}

TEST(FftFaults, AChangedRoundingModeAndMissingTablesEndTheProgram) {
    FftBench bench(2048);
    EXPECT_EXIT(dying([&] {
                    _MM_SET_ROUNDING_MODE(_MM_ROUND_TOWARD_ZERO);
                    square(bench, nullptr);
                }),
                ::testing::ExitedWithCode(1), "The FPU Control Word has been corrupted.");
    release_fft_tables();
    EXPECT_DEATH(dying([] { FftDescriptor<std::uint64_t> d(2048); }), "Twiddle tables are too short.");
}

}  // namespace
}  // namespace lumo::testing
