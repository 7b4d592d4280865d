#include "lumo/series/common_factor.h"

#include <gtest/gtest.h>

#include "failures.h"
#include "lumo/series/modular_check.h"
#include "lumo/series/psr_series.h"
#include "series_runs.h"
#include "velmora/constants/series/builtin_series.h"
#include "velmora/constants/series/series_arcsinlemn.h"
#include "velmora/constants/series/series_pi.h"

namespace lumo {
namespace {

using testing::BlockRun;
using testing::Exact;
using testing::exact_sum;
using testing::integer_value;
using testing::Scratch;
using testing::to_mpz;

/// (n! / lcm(1 .. n))^m without its factors 2 and 3.
mpz_class common_factor(unsigned n, unsigned m) {
    mpz_class H = 1, lcm = 1;
    for (unsigned k = 2; k <= n; ++k) {
        H *= k;
        mpz_lcm_ui(lcm.get_mpz_t(), lcm.get_mpz_t(), k);
    }
    H /= lcm;
    for (const unsigned p : {2, 3}) mpz_remove(H.get_mpz_t(), H.get_mpz_t(), mpz_class(p).get_mpz_t());
    mpz_class G;
    mpz_pow_ui(G.get_mpz_t(), H.get_mpz_t(), m);
    return G;
}

template <typename T>
class CommonFactors : public ::testing::Test {};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(CommonFactors, WordTypes);

template <typename wtype>
auto all_series() {
    std::vector<std::unique_ptr<SeriesCommonP2B3<wtype>>> all;
    all.push_back(std::make_unique<velmora::SeriesPiChudnovsky<wtype>>());
    all.push_back(std::make_unique<velmora::SeriesPiRamanujan<wtype>>());
    all.push_back(velmora::make_arcsinlemn_series<wtype>(7, 23));
    for (int which = 0; which <= int(velmora::BuiltinSeries::catalan_huvent); ++which)
        all.push_back(velmora::make_series<wtype>(velmora::BuiltinSeries(which)));
    return all;
}

TYPED_TEST(CommonFactors, EveryRunOfTermsHasIt) {
    for (const auto& series : all_series<TypeParam>()) {
        ASSERT_GT(series->common_power(), 0u);
        const mpz_class G = common_factor(299, series->common_power());
        EXPECT_NEAR(CommonFactor<TypeParam>(299, series->common_power(), fft_size_for(30000)).size(),
                    std::log(2) * double(mpz_sizeinbase(G.get_mpz_t(), 2)), 1);
        // Just behind, on and before multiples of powers of primes, and where nothing is special.
        for (const upL_t a : {1, 2, 150, 121, 122, 625, 626, 2401, 2402, 14641, 123456, 999983, 999984}) {
            const Exact sum = exact_sum(*series, a, a + 300);
            EXPECT_TRUE(sum.P % G == 0 && sum.Q % G == 0 && sum.R % G == 0) << a;
        }
    }
}

/// Merges of parts whose G is in Q0 and R1, and in the sum of the two products of P, but in neither of them.
template <typename wtype>
class MergeTrial {
 public:
    MergeTrial(unsigned terms, unsigned power)
        : G(common_factor(terms, power)),
          factor(terms, power, ring()),
          image(factor.image_bytes()),
          scratch(std::max(factor.make_bytes(), factor.merge_bytes())),
          storage(7 * room() * sizeof(wtype)) {
        Multiply::ensure_tables(2 * ring().limit_bits);
        factor.make(context(), image.template words<wtype>());
    }
    /// Numbers of ones or random ones; negative by the bits of `signs`; the bottom of P0 Q1 stands `apart`
    /// words above that of R0 P1, or below it.
    void run(bool ones, unsigned signs, spL_t apart, bool need_R) {
        used = 0;
        const auto some = [&](upL_t bits) {
            return ones ? mpz_class((mpz_class(1) << bits) - 1) : mpz_class(random.get_z_bits(bits) / 3 + 1);
        };
        const auto sign = [&](unsigned bit, const mpz_class& x) {
            return signs >> bit & 1 ? mpz_class(-x) : x;
        };
        // Two products of these and the distance leave one word of the ring free, and one bit.
        const upL_t half = (ring().limit_bits - 7 * W) / 2;
        const spL_t e0 = std::max<spL_t>(apart, 0), e1 = std::max<spL_t>(-apart, 0);
        const mpz_class P0 = sign(0, some(half)), q0 = some(half), Q1 = some(half), r1 = some(half);
        mpz_class R0 = some(half), inverse, P1;
        while (mpz_invert(inverse.get_mpz_t(), mpz_class(R0 << (e1 * W)).get_mpz_t(), G.get_mpz_t()) == 0)
            --R0;
        R0 = sign(1, R0);
        const mpz_class PQ = (P0 * Q1) << (e0 * W), wanted = sign(1, -PQ) * inverse;
        mpz_fdiv_r(P1.get_mpz_t(), wanted.get_mpz_t(), G.get_mpz_t());
        P1 += G * sign(2, some(half - mpz_sizeinbase(G.get_mpz_t(), 2)));
        const mpz_class sum = PQ + ((R0 * P1) << (e1 * W));
        ASSERT_EQ(sum % G, 0);

        Parts<wtype> left{number(P0, 1 + e0), number(q0 * G, 0), number(R0, 2), true};
        const Parts<wtype> right{number(P1, e1), number(Q1, 1), number(r1 * G, 3), need_R};
        factor.merge(context(), left, right, number(0, 0));
        expect(left.P, sum / G, 2);
        expect(left.Q, q0 * Q1, 1);
        if (need_R) expect(left.R, R0 * r1, 5);
        EXPECT_TRUE(image.intact() && scratch.intact() && storage.intact());
    }

 private:
    static constexpr upL_t W = WordTraits<wtype>::bits;
    static const FftSize& ring() { return fft_size_for(30000); }
    static upL_t room() { return 2 * ring().limit_bits / W; }
    MultiplyContext context() const { return scratch.context(1, serial_parallelizer()); }
    ExactFloat<wtype> number(const mpz_class& value, spL_t exp) {
        ExactFloat<wtype> out(storage.template words<wtype>() + room() * used++, room());
        mpz_export(out.T, &out.L, -1, sizeof(wtype), 0, 0, value.get_mpz_t());
        out.exp = exp;
        out.positive = value >= 0;
        out.update_hash();
        return out;
    }
    static void expect(const ExactFloat<wtype>& part, const mpz_class& value, spL_t exp) {
        EXPECT_EQ(integer_value<wtype>(part), mpz_class(value << (exp * W)));
        EXPECT_EQ(part.hash_error(), 0u);
    }

    const mpz_class G;
    CommonFactor<wtype> factor;
    Scratch image, scratch, storage;
    upL_t used = 0;
    gmp_randclass random{gmp_randinit_default};
};

TYPED_TEST(CommonFactors, MergesLeaveItOut) {
    for (const unsigned power : {1u, 3u})
        for (const unsigned terms : {7u, 20u, 300u}) {
            MergeTrial<TypeParam> trial(terms, power);
            for (const bool ones : {false, true})
                for (const spL_t apart : {-5, 0, 5})
                    for (unsigned signs = 0; signs < 8; ++signs) {
                        SCOPED_TRACE(::testing::Message()
                                     << power << " " << terms << " " << ones << " " << apart << " " << signs);
                        trial.run(ones, signs, apart, signs % 2 == 0);
                    }
        }
}

/// A reduced series over ranges that start and end within pieces and at their ends.
TYPED_TEST(CommonFactors, ReducedRangesHaveTheSameValue) {
    const velmora::SeriesPiChudnovsky<TypeParam> chudnovsky;
    ReducedSeries<TypeParam> series(chudnovsky, 300000, fft_size_for(30000));
    const upL_t grid = series.grid_terms;
    ASSERT_GT(grid, 200u);
    Scratch image(series.factor().image_bytes()), scratch(series.factor().make_bytes());
    Multiply::ensure_tables(1 << 20);
    series.make(scratch.context(1, serial_parallelizer()), image.template words<TypeParam>());
    struct Case {
        upL_t a, b, tds, levels;
    };
    for (const Case c : {Case{1, grid, 1, 0}, Case{1, grid + 1, 2, 0}, Case{5 * grid, 6 * grid, 2, 0},
                         Case{3 * grid - 1, 9 * grid + 7, 3, 1}, Case{grid + 1, 20 * grid, 16, 3},
                         Case{500 * grid, 502 * grid, 1, 0}, Case{500 * grid - 7, 503 * grid + 5, 2, 1}}) {
        SCOPED_TRACE(::testing::Message() << c.a << " " << c.b);
        const Exact whole = exact_sum(chudnovsky, c.a, c.b);
        for (const bool need_R : {true, false}) {
            const BlockRun<TypeParam> run(series, Region(c.a, c.b), c.tds, c.levels, need_R,
                                          process_parallelizer());
            const mpz_class Q = integer_value<TypeParam>(run.parts.Q);
            EXPECT_EQ(integer_value<TypeParam>(run.parts.P) * whole.Q, whole.P * Q);
            if (need_R) {
                EXPECT_EQ(integer_value<TypeParam>(run.parts.R) * whole.Q, whole.R * Q);
            }
            EXPECT_NO_THROW(
                lmb_Verify_BSR<TypeParam>(c.a, c.b, {&run.parts.P, &run.parts.Q, &run.parts.R}, {}));
            const upL_t pieces = c.b / grid - (c.a <= 1 ? 0 : (c.a + grid - 1) / grid);
            const mpz_class removed = whole.Q / Q;
            EXPECT_NEAR(double(mpz_sizeinbase(removed.get_mpz_t(), 2)) * std::log(2),
                        double(pieces) * series.factor().size(), 1);
        }
    }
}

/// Pieces of the length that computations use: their halves fit the ring, whatever share of them is common.
TYPED_TEST(CommonFactors, PiecesOfEverySeriesFitTheirRing) {
    for (const auto& series : all_series<TypeParam>())
        for (const upL_t end : {200000, 10000000}) {
            ReducedSeries<TypeParam> reduced(*series, end);
            const upL_t grid = reduced.grid_terms, last = end / grid;
            Scratch image(reduced.factor().image_bytes()), scratch(reduced.factor().make_bytes());
            Multiply::ensure_tables(1 << 20);
            reduced.make(scratch.context(1, serial_parallelizer()), image.template words<TypeParam>());
            for (const Region range : {Region(1, 4 * grid), Region(5 * grid - 9, 8 * grid),
                                       Region((last - 1) * grid, last * grid)}) {
                const BlockRun<TypeParam> run(reduced, range, 1, 0, true, serial_parallelizer());
                EXPECT_NO_THROW(lmb_Verify_BSR<TypeParam>(range.s, range.e,
                                                          {&run.parts.P, &run.parts.Q, &run.parts.R}, {}));
                EXPECT_LE(run.parts.Q.L, reduced.result_words(range.s, range.e));
            }
        }
}

TEST(CommonFactor, AWrongInverseIsSeen) {
    const velmora::SeriesPiChudnovsky<std::uint64_t> chudnovsky;
    ReducedSeries<std::uint64_t> series(chudnovsky, 30000, fft_size_for(30000));
    Scratch image(series.factor().image_bytes()), scratch(series.factor().make_bytes());
    Multiply::ensure_tables(1 << 20);
    const MultiplyContext ctx = scratch.context(1, serial_parallelizer());
    series.make(ctx, image.words<std::uint64_t>());
    // An image like any other in the eyes of the transform.
    CommonFactor<std::uint64_t>(series.grid_terms - 2, 2, fft_size_for(30000))
        .make(ctx, image.words<std::uint64_t>());
    const BlockRun<std::uint64_t> run(series, Region(1, series.grid_terms), 1, 0, true,
                                      serial_parallelizer());
    EXPECT_THROW(lmb_Verify_BSR<std::uint64_t>(1, series.grid_terms, {&run.parts.P}, {}),
                 BSRModularCheckFailedException);
}

}  // namespace
}  // namespace lumo
