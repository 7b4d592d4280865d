#include "velmora/constants/series/builtin_series.h"

#include "series_runs.h"
#include "value_run.h"
#include "velmora/constants/plans/series_value.h"
#include "velmora/constants/series/leaf_words.h"

namespace velmora::testing {
namespace {

using lumo::testing::BlockRun;
using lumo::testing::exact_sum;
using lumo::testing::integer_value;

struct Published {
    BuiltinSeries which;
    upL_t terms;
    const char* P;  ///< magnitudes over the first `terms` terms
    const char* Q;
    const char* R;
    bool positive;  ///< the first term
};
constexpr Published SERIES[] = {
    {BuiltinSeries::zeta3_az, 3, "28588214693376", "418211942400000", "7776", false},
    {BuiltinSeries::zeta3_wedeniwski, 3, "38891459606089861076544000", "525361186237337049600000000",
     "26244000", false},
    {BuiltinSeries::catalan_pilehrood_short, 3, "9668134139643", "5277564317025", "106168320", true},
    {BuiltinSeries::catalan_pilehrood_long, 3, "183200507669032866276075", "100004033341249813400625",
     "11472126640128000", true},
    {BuiltinSeries::catalan_guillera2008, 3, "194799", "1157625", "216", false},
    {BuiltinSeries::catalan_guillera2019, 3, "22210557794824549365", "12124122117679947375", "97844723712000",
     true},
    {BuiltinSeries::catalan_lupas, 3, "1157607404640", "456536705625", "106168320", false},
    {BuiltinSeries::catalan_huvent, 2, "915444903822421365327227658750", "83285883073881567503424000000",
     "20333467547334367066265625", true},
};

template <typename T>
class SeriesTest : public ::testing::Test {};
TYPED_TEST_SUITE(SeriesTest, WordTypes);

TYPED_TEST(SeriesTest, PublishedRanges) {
    for (const Published& row : SERIES) {
        const auto series = make_series<TypeParam>(row.which);
        const BlockRun<TypeParam> run(*series, {1, 1 + row.terms}, 1, 0, true, lumo::serial_parallelizer());
        EXPECT_EQ(abs(integer_value<TypeParam>(run.parts.P)), mpz_class(row.P));
        EXPECT_EQ(integer_value<TypeParam>(run.parts.Q), mpz_class(row.Q));
        EXPECT_EQ(abs(integer_value<TypeParam>(run.parts.R)), mpz_class(row.R));
        EXPECT_EQ(run.parts.P.positive, row.positive) << row.P;
    }
}

TYPED_TEST(SeriesTest, EveryCutIsExactAndWithinItsSize) {
    constexpr upL_t FAR = upL_t(1) << 40;
    for (const Published& row : SERIES) {
        SCOPED_TRACE(row.P);
        const auto series = make_series<TypeParam>(row.which);
        struct Case {
            upL_t a, b, tds, levels;
        };
        for (const Case c : {Case{1, 2, 1, 0}, Case{1, 30, 1, 0}, Case{3, 120, 2, 0}, Case{1, 1300, 2, 1},
                             Case{FAR, FAR + 1, 1, 0}, Case{FAR, FAR + 1001, 3, 1}}) {
            const auto expected = exact_sum(*series, c.a, c.b);
            const BlockRun<TypeParam> run(*series, {c.a, c.b}, c.tds, c.levels, true,
                                          lumo::process_parallelizer());
            const upL_t words = series->result_words(c.a, c.b);
            EXPECT_TRUE(run.gives(expected)) << c.a << " " << c.b;
            for (const mpz_class* part : {&expected.P, &expected.Q, &expected.R})
                EXPECT_LE(mpz_sizeinbase(part->get_mpz_t(), 2), words * lumo::WordTraits<TypeParam>::bits);
            const upL_t largest = std::max(mpz_sizeinbase(expected.P.get_mpz_t(), 2),
                                           mpz_sizeinbase(expected.Q.get_mpz_t(), 2));
            EXPECT_GE(largest + 640, words * lumo::WordTraits<TypeParam>::bits) << "a size far too large";
        }
    }
}

// Q has no factor of two here, so that nothing is stripped, and sixty-four forks leave it the least room.
TYPED_TEST(SeriesTest, ManyForksHaveRoom) {
    const auto series = make_series<TypeParam>(BuiltinSeries::catalan_guillera2008);
    for (const auto& [a, b] : {std::pair<upL_t, upL_t>{1, 470001}, {1000000, 1400000}}) {
        const BlockRun<TypeParam> run(*series, {a, b}, 64, 0, false, lumo::process_parallelizer());
        EXPECT_EQ(run.parts.P.hash_error(), 0u);
        EXPECT_EQ(run.parts.Q.hash_error(), 0u);
    }
}

TYPED_TEST(SeriesTest, ValuesAtAllPrecisions) {
    for (const upL_t p : PRECISIONS) {
        const upL_t bits = lumo::WordTraits<TypeParam>::bits * (p + 8);
        const Exact zeta3(bits, [](mpfr_t x) { mpfr_zeta_ui(x, 3, MPFR_RNDN); });
        const Exact catalan(bits, [](mpfr_t x) { mpfr_const_catalan(x, MPFR_RNDN); });
        for (const Published& row : SERIES) {
            const bool is_zeta3 =
                row.which == BuiltinSeries::zeta3_az || row.which == BuiltinSeries::zeta3_wedeniwski;
            const upL_t tds = 1 + p % 3;
            const Series_BigFloatR<TypeParam> plan(make_series<TypeParam>(row.which),
                                                   constant_coefficients(row.which), p, tds);
            EXPECT_TRUE(ValueRun<TypeParam>(plan, tds).equals(is_zeta3 ? zeta3 : catalan, p))
                << row.P << " at " << p;
            const auto series = make_series<TypeParam>(row.which);
            const lumo::DoubleDouble size = lumo::words_to_size<TypeParam>(p);
            EXPECT_FALSE(size > series->remaining(1, 1 + series->terms_for(size))) << row.P << " at " << p;
        }
    }
}

TYPED_TEST(SeriesTest, PolynomialsOfAnyWidth) {
    const std::int64_t coefficients[] = {315, -7800, 73256, -332800, 782848, -915456, 419840};
    const std::int64_t wide[] = {-1, std::numeric_limits<std::int64_t>::max(),
                                 -std::numeric_limits<std::int64_t>::max(), 1};
    const auto value = [](std::span<const std::int64_t> c, upL_t k) {
        mpz_class sum = 0;
        for (upL_t i = c.size(); i-- != 0;) sum = sum * mpz_class(k) + mpz_class(c[i]);
        return sum;
    };
    TypeParam words[lumo::LeafTerm<TypeParam>::MAX_WORDS];
    for (const upL_t k : {upL_t(1), upL_t(2), upL_t(3), upL_t(20000), upL_t(1) << 24, (upL_t(1) << 32) - 1,
                          upL_t(1) << 32, upL_t(1) << 47, ~upL_t(0)}) {
        const upL_t L = set_polynomial(words, coefficients, k);
        EXPECT_EQ(lumo::testing::to_mpz(words, L), value(coefficients, k)) << k;
    }
    for (const upL_t k : {~upL_t(0), upL_t(1) << 63}) {
        const upL_t L = set_polynomial(words, wide, k);
        EXPECT_EQ(lumo::testing::to_mpz(words, L), value(wide, k)) << k;
    }
}

TEST(SeriesFaults, AFlippedBitInAnySeriesEndsTheComputation) {
    for (const Published& row : SERIES) {
        SCOPED_TRACE(row.P);
        expect_faults_are_caught([&](auto* fault) {
            const Series_BigFloatR<std::uint64_t> plan(make_series<std::uint64_t>(row.which),
                                                       constant_coefficients(row.which), 2000, 1);
            ValueRun<std::uint64_t>(plan, 1, fault);
        });
    }
}

}  // namespace
}  // namespace velmora::testing
