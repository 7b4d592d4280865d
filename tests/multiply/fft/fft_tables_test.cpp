// The size table, memory sizes, twiddle tables and carries.
#include <gmpxx.h>
#include <mpfr.h>

#include "fft_support.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/fft/fft_carry.h"
#include "lumo/multiply/fft/unit_roots.h"

namespace lumo::testing {
namespace {

TEST(FftSizes, TheSmallestRowThatHoldsTheProduct) {
    const auto row = [](upL_t bits) { return describe(fft_size_for(bits)); };
    EXPECT_EQ(row(0), "m1k7b16");
    EXPECT_EQ(row(2048), "m1k7b16");
    EXPECT_EQ(row(2049), "m1k7b20");
    EXPECT_EQ(row(1474560), "m3k15b15");
    EXPECT_EQ(row(FFT_MAX_BITS), "m1k23b12");
    EXPECT_THROW(fft_size_for(FFT_MAX_BITS + 1), LimitExceededException);
    for (std::size_t i = 1; i < fft_sizes().size(); i++) {
        EXPECT_EQ(fft_size_for(fft_sizes()[i].limit_bits).limit_bits, fft_sizes()[i].limit_bits);
        EXPECT_EQ(fft_size_for(fft_sizes()[i - 1].limit_bits + 1).limit_bits, fft_sizes()[i].limit_bits);
    }
}

TEST(FftSizes, BuffersServeEveryShorterProduct) {
    const FftAlgorithm<std::uint64_t> fft;
    upL_t last = 0;
    for (const FftSize& size : fft_sizes()) {
        const upL_t total = fft.max_buffer_size(size.limit_bits / 64, 5);
        EXPECT_EQ(total, FftAlgorithm<std::uint32_t>().max_buffer_size(size.limit_bits / 32, 1));
        EXPECT_GE(total, std::max(last, 20 * size.points()));
        last = total;
    }
    EXPECT_EQ(last, 20u << 23);
    for (upL_t words : {FFT_MAX_BITS / 64 + 1, ~upL_t(0)})
        EXPECT_THROW(fft.max_buffer_size(words, 1), LimitExceededException);
}

TEST(FftTables, RootsAreNearestDoubles) {
    mpfr_t angle, c, s;
    mpfr_inits2(200, angle, c, s, nullptr);
    for (auto [m, e] : {std::pair<upL_t, unsigned>{1, 3}, {1, 20}, {3, 12}, {5, 22}}) {
        const UnitRoots roots(m, e);
        int second_nearest = 0, total = 0;
        for (upL_t i = 0; i < 3000; i++) {
            const upL_t n = i * 0x9e3779b97f4a7c15 % (2 * roots.order());
            mpfr_const_pi(angle, MPFR_RNDN);
            mpfr_mul_ui(angle, angle, 2 * n, MPFR_RNDN);
            mpfr_div_ui(angle, angle, roots.order(), MPFR_RNDN);
            mpfr_sin_cos(s, c, angle, MPFR_RNDN);
            double got[2];
            roots.get(n, got);
            const double want[2] = {mpfr_get_d(c, MPFR_RNDN), mpfr_get_d(s, MPFR_RNDN)};
            for (int part = 0; part < 2; part++) {
                total++;
                if (std::abs(want[part]) < 1e-40) {
                    EXPECT_EQ(got[part], 0.0);
                } else if (got[part] != want[part]) {
                    second_nearest++;
                    EXPECT_LE(std::abs(got[part] - want[part]), std::abs(want[part]) * 0x1p-52);
                }
            }
        }
        EXPECT_LT(second_nearest, total / 100) << m << " 2^" << e;
    }
    mpfr_clears(angle, c, s, nullptr);
}

TEST(FftTables, TheSameTablesWhoeverBuildsThem) {
    const upL_t bits = 1474560, bytes = fft_table_bytes(bits);
    Scratch serial(bytes), shared(bytes);
    const auto pool = make_pushpool(2);
    build_fft_tables({serial.data(), bytes}, bits, {});
    EXPECT_EQ(fft_tables().roots, serial.data());
    build_fft_tables({shared.data(), bytes}, bits, {3, pool.get()});
    EXPECT_EQ(fft_tables().roots, shared.data());
    EXPECT_EQ(std::memcmp(serial.data(), shared.data(), bytes), 0);
    EXPECT_TRUE(serial.intact() && shared.intact());
    ensure_fft_tables(bits);
    EXPECT_EQ(fft_tables().roots, shared.data()) << "long enough already";
    ensure_fft_tables(bits + 1);
    EXPECT_NE(fft_tables().roots, shared.data());
    EXPECT_THROW(build_fft_tables({serial.data(), bytes - 128}, bits, {}), BufferTooSmallException);
    release_fft_tables();
    EXPECT_EQ(fft_tables().bits, 0u);
}

TEST(FftCarry, AddsAnywhereAndWraps) {
    std::mt19937_64 random(7);
    const auto integer = [](const Words& a) {
        mpz_class z;
        mpz_import(z.get_mpz_t(), a.size(), -1, 8, 0, 0, a.data());
        return z;
    };
    for (int round = 0; round < 4000; round++) {
        const upL_t words = 1 + random() % 6, size = 8 * words;
        Words a = operand(Pattern(random() % 2), words, 9, unsigned(random()));
        if (random() % 4 == 0) a.assign(words, 0);
        const upL_t offset = random() % (size - 7);
        const std::int64_t carry = std::int64_t(random()) >> (random() % 63);
        const mpz_class step(static_cast<long>(carry)), top = mpz_class(1) << (8 * size);

        Words t = a;
        auto* bytes = reinterpret_cast<unsigned char*>(t.data());
        const int out = add_carry(bytes, size, offset, carry);
        EXPECT_EQ(integer(t) + out * top, integer(a) + (step << (8 * offset))) << "round " << round;

        // The same carry at the top, modulo 2^(8 size) + 1; -1 comes out as zero.
        t = a;
        wrap_negative(bytes, size, carry);
        mpz_class expected = integer(a) - step;
        mpz_fdiv_r(expected.get_mpz_t(), expected.get_mpz_t(), mpz_class(top + 1).get_mpz_t());
        if (expected == top) expected = 0;
        EXPECT_EQ(integer(t), expected) << "round " << round << " carry " << carry;
    }
}

}  // namespace
}  // namespace lumo::testing
