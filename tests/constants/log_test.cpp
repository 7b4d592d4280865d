#include "velmora/constants/log.h"

#include <limits>
#include <set>

#include "failures.h"
#include "lumo/series/binary_bbp/block_bbp.h"
#include "series_runs.h"
#include "value_run.h"
#include "velmora/constants/machin/smooth_arguments.h"
#include "velmora/constants/series/series_arccoth.h"

namespace velmora::testing {
namespace {

using machin::Formula;
using machin::Which;

struct Pair {
    explicit Pair(std::uint64_t n)
        : primary(machin::search_primary(n, machin::RANKING_SIZE).formula),
          secondary(machin::search_secondary(primary, machin::RANKING_SIZE).formula) {}
    Formula primary, secondary;
};

std::set<std::uint64_t> arguments(const Formula& formula) {
    std::set<std::uint64_t> xs;
    for (const machin::Term& term : formula.terms) xs.insert(term.x);
    return xs;
}

TEST(MachinSearch, RanksByTheCostRule) {
    // The published formulas of log(2) are beaten by nothing.
    const auto two = machin::search_primary(2, machin::RANKING_SIZE);
    EXPECT_EQ(arguments(two.formula), (std::set<std::uint64_t>{26, 4801, 8749}));
    EXPECT_FALSE(two.beats_table);
    EXPECT_EQ(machin::search_primary(1, 1e9).cost, 0);
    EXPECT_TRUE(machin::search_secondary({1, {}}, 1e9).formula.terms.empty());
    // A larger argument costs less, but never by as much as its fewer terms alone would say.
    EXPECT_LT(machin::cost(8749, 1e9), machin::cost(26, 1e9));
    EXPECT_GT(machin::cost(676, 1e9), machin::cost(26, 1e9) / 2);
    for (const std::uint64_t n : {2, 3, 5, 6, 7, 10, 11, 13}) {
        Formula listed{n, {}}, second{n, {}};
        const double listed_cost = machin::lookup(n, 1, Which::primary, machin::RANKING_SIZE, listed);
        machin::lookup(n, 1, Which::secondary, machin::RANKING_SIZE, second);
        const auto best = machin::search_primary(n, machin::RANKING_SIZE);
        EXPECT_TRUE(machin::verify(listed) && machin::verify(second)) << n;
        EXPECT_LE(best.cost, listed_cost) << n;
        EXPECT_EQ(best.beats_table, best.cost < listed_cost) << n;
    }
    Formula none;
    EXPECT_EQ(machin::lookup(17, 1, Which::primary, 1e9, none), machin::NO_FORMULA);
    EXPECT_TRUE(none.terms.empty());
}

TEST(MachinSearch, AnEntryThatSharesAnArgumentIsNotBeaten) {
    // The entry of two is {31, 49, 161}.
    const auto shared = machin::search_secondary({2, {{49, 1}}}, machin::RANKING_SIZE);
    EXPECT_FALSE(shared.formula.terms.empty());
    EXPECT_FALSE(arguments(shared.formula).contains(49));
    EXPECT_FALSE(shared.beats_table);
    // Here it might be used, and something cheaper is found.
    const auto beaten = machin::search_secondary({2, {{1000003, 1}}}, machin::RANKING_SIZE);
    Formula entry{2, {}};
    const double listed = machin::lookup(2, 1, Which::secondary, machin::RANKING_SIZE, entry);
    EXPECT_LT(beaten.cost, listed);
    EXPECT_TRUE(beaten.beats_table);
}

TEST(MachinSearch, LargePrimes) {
    for (const std::uint64_t n : {std::uint64_t(999983), std::uint64_t(1000003), std::uint64_t(2147483647),
                                  std::uint64_t(999999999989), machin::LARGEST_ARGUMENT}) {
        const Pair pair(n);
        for (const Formula& formula : {pair.primary, pair.secondary}) {
            EXPECT_FALSE(formula.terms.empty()) << n;
            EXPECT_TRUE(machin::verify(formula)) << machin::to_text(formula);
        }
    }
}

TEST(MachinSearch, AWrongFormulaIsSeen) {
    Formula formula = Pair(2).primary;
    formula.terms[0].c += 1;
    EXPECT_FALSE(machin::verify(formula));
    formula.terms[0].c -= 1;
    formula.terms[1].x += 1;
    EXPECT_FALSE(machin::verify(formula));
    formula.terms[1].x -= 1;
    EXPECT_TRUE(machin::verify(formula));
    formula.n = 4;  // one prime alone does not come out
    EXPECT_FALSE(machin::verify(formula));
    EXPECT_EQ(machin::to_text({2, {{26, 18}}}), "Log[2] = \n                    18 * ArcCoth[26]\n");
}

template <typename wtype>
using BlockRun = lumo::testing::BlockRun<wtype, lumo::BlockBBP<wtype>>;

template <typename T>
class Log : public ::testing::Test {};
TYPED_TEST_SUITE(Log, WordTypes);

TYPED_TEST(Log, ArcCothOfAnyArgument) {
    for (const std::uint64_t x : {std::uint64_t(2), std::uint64_t(26), std::uint64_t(65536),
                                  std::uint64_t(4294967295), (std::uint64_t(1) << 62) - 1}) {
        if (sizeof(TypeParam) == 4 && x > 0xffffffff) continue;
        const auto series = Series_ArcCoth_Base<TypeParam>(x);
        const auto expected = lumo::testing::exact_sum(*series, 1, 1200);
        const BlockRun<TypeParam> run(*series->binary_bbp(), {1, 1200}, 2, 1, true,
                                      lumo::process_parallelizer());
        EXPECT_EQ(lumo::testing::integer_value<TypeParam>(run.parts.P), expected.P) << x;
        EXPECT_EQ(lumo::testing::integer_value<TypeParam>(run.parts.R), expected.R) << x;
        for (const upL_t p : {1, 3, 10, 40, 300}) {
            const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8), [&](mpfr_t value) {
                mpfr_set_ui(value, 1, MPFR_RNDN);
                mpfr_div_ui(value, value, x, MPFR_RNDN);
                mpfr_atanh(value, value, MPFR_RNDN);
            });
            const Series_BigFloatR<TypeParam> plan(Series_ArcCoth_Base<TypeParam>(x), arccoth_coefficients(x),
                                                   p, 1);
            EXPECT_TRUE(ValueRun<TypeParam>(plan).equals(exact, p)) << x << " " << p;
        }
    }
    EXPECT_THROW(Series_ArcCoth_Base<TypeParam>(1), lumo::InvalidParametersException);
    EXPECT_THROW(Series_ArcCoth_Base<TypeParam>(std::uint64_t(1) << 62), lumo::InvalidParametersException);
}

TYPED_TEST(Log, RangesOfArcCothAgainstTheSumItself) {
    constexpr upL_t FAR = upL_t(1) << 33;
    for (const std::uint64_t x : {2, 3, 26, 251}) {
        const auto series = Series_ArcCoth_Base<TypeParam>(x);
        for (const auto& [a, b] : {std::pair<upL_t, upL_t>{1, 2},
                                   {1, 9},
                                   {1, 400},
                                   {700, 1100},
                                   {FAR, FAR + 1},
                                   {FAR, FAR + 60}}) {
            SCOPED_TRACE(::testing::Message() << x << ": " << a << " " << b);
            mpq_class sum = 0;
            for (upL_t k = b; k-- != a;) {
                mpq_class term(ARCCOTH_COMMON, 2 * k - 1);
                term.canonicalize();
                sum = (sum + term) / mpq_class(x * x);
            }
            const BlockRun<TypeParam> run(*series->binary_bbp(), {a, b}, 1, 0, true,
                                          lumo::serial_parallelizer());
            const mpz_class P = lumo::testing::integer_value<TypeParam>(run.parts.P);
            const mpz_class Q = lumo::testing::integer_value<TypeParam>(run.parts.Q);
            mpq_class got(P, Q);
            got.canonicalize();
            EXPECT_EQ(got, sum);
            for (const auto* part : {&run.parts.P, &run.parts.Q, &run.parts.R}) {
                EXPECT_EQ(part->hash_error(), 0u);
            }
            const upL_t room = series->result_words(a, b) * lumo::WordTraits<TypeParam>::bits;
            const upL_t bits = std::max(mpz_sizeinbase(P.get_mpz_t(), 2), mpz_sizeinbase(Q.get_mpz_t(), 2));
            EXPECT_LE(bits, room);
            EXPECT_GE(bits + 320, room) << "a size far too large";
            EXPECT_LE(series->block_size(a, b - 1).hi, series->block_size(a, b).hi);
        }
    }
}

TYPED_TEST(Log, CoefficientsFillAWordAtMost) {
    constexpr auto most = static_cast<TypeParam>(-1);
    constexpr std::int64_t largest =
        sizeof(TypeParam) == 4 ? std::int64_t(most) : std::numeric_limits<std::int64_t>::max();
    const auto add = [](SeriesSum_BigFloatR<TypeParam>& sum, std::int64_t c) {
        sum.add(c, "", Series_ArcCoth_Base<TypeParam>(26), arccoth_coefficients(26));
    };
    for (const std::int64_t c :
         {largest, -largest, sizeof(TypeParam) == 4 ? -1 : std::numeric_limits<std::int64_t>::min()}) {
        SeriesSum_BigFloatR<TypeParam> sum(20, 1);
        add(sum, c);
        const Exact exact(lumo::WordTraits<TypeParam>::bits * 30, [&](mpfr_t x) {
            mpfr_set_ui(x, 1, MPFR_RNDN);
            mpfr_div_ui(x, x, 26, MPFR_RNDN);
            mpfr_atanh(x, x, MPFR_RNDN);
            mpfr_mul_si(x, x, c, MPFR_RNDN);
        });
        EXPECT_TRUE(ValueRun<TypeParam>(sum).equals(exact, 20)) << c;
    }
    if constexpr (sizeof(TypeParam) == 4) {
        SeriesSum_BigFloatR<TypeParam> sum(20, 1);
        for (const std::int64_t c : {largest + 1, -largest - 1, std::numeric_limits<std::int64_t>::min()}) {
            EXPECT_EQ(
                lumo::failure_of([&] { add(sum, c); }),
                "LimitExceededException SeriesSum_BigFloatR::add(): Coefficient doesn't fit into a word.")
                << c;
        }
        const Formula large{2, {{26, 18}, {4801, -largest - 1}}};
        EXPECT_THROW(Log_Machin_BigFloatR<TypeParam>(large, 20, 1), lumo::LimitExceededException);
    }
}

TYPED_TEST(Log, TwoAtAllPrecisions) {
    const Pair two(2);
    for (const upL_t p : PRECISIONS) {
        const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8),
                          [](mpfr_t x) { mpfr_const_log2(x, MPFR_RNDN); });
        for (const Formula& formula : {two.primary, two.secondary}) {
            const upL_t tds = 1 + p % 3;
            const auto plan = Log_Machin_BigFloatR<TypeParam>(formula, p, tds);
            EXPECT_TRUE(ValueRun<TypeParam>(plan, tds).equals(exact, p)) << p;
        }
    }
}

TEST(LogValues, EveryIntegerUpToAThousandByTwoFormulasThatShareNothing) {
    constexpr upL_t p = 52;
    for (std::uint64_t n = 1; n <= 1000; ++n) {
        const Exact exact(64 * (p + 8), [&](mpfr_t x) { mpfr_log_ui(x, n, MPFR_RNDN); });
        const Pair pair(n);
        std::set<std::uint64_t> all = arguments(pair.primary);
        all.merge(arguments(pair.secondary));
        EXPECT_EQ(all.size(), pair.primary.terms.size() + pair.secondary.terms.size()) << n;
        for (const Formula& formula : {pair.primary, pair.secondary}) {
            ASSERT_EQ(formula.terms.empty(), n == 1) << n;
            EXPECT_TRUE(machin::verify(formula)) << machin::to_text(formula);
            const auto plan = Log_Machin_BigFloatR<std::uint64_t>(formula, p, 1);
            ASSERT_TRUE(ValueRun<std::uint64_t>(plan).equals(exact, p)) << n;
        }
    }
}

TEST(LogConstant, Arguments) {
    const auto constant = make_constant(find_by_key("log"));
    EXPECT_EQ(constant->name(), "Log(2)");
    EXPECT_EQ(constant->algorithm_name(constant->algorithm()), "Primary Machin-like Formula (3 terms)");
    EXPECT_EQ(constant->algorithm_remark(constant->algorithm()),
              "\n18 ArcCoth( 26 )\n-2 ArcCoth( 4801 )\n8 ArcCoth( 8749 )");
    constant->set_argument("1000000000000");
    for (const char* text : {"0", "", "x", "-3", "1000000000001", "18446744073709551616"}) {
        EXPECT_THROW(constant->set_argument(text), lumo::InvalidParametersException) << text;
        EXPECT_EQ(constant->argument(), 1000000000000u);
    }
    constant->set_argument("1");
    EXPECT_EQ(constant->algorithm_name(constant->algorithm()), "Primary Machin-like Formula (0 terms)");
    EXPECT_EQ(constant->terms(1000), 0u);
}

TEST(LogFaults, AFlippedBitEndsTheComputation) {
    expect_faults_are_caught([](auto* fault) {
        ValueRun<std::uint64_t>(Log_Machin_BigFloatR<std::uint64_t>(Pair(2).primary, 3000, 1), 1, fault);
    });
    // A power of two: all of the ratio is in the exponents.
    expect_faults_are_caught([](auto* fault) {
        const Series_BigFloatR<std::uint64_t> plan(Series_ArcCoth_Base<std::uint64_t>(4),
                                                   arccoth_coefficients(4), 2000, 1);
        ValueRun<std::uint64_t>(plan, 1, fault);
    });
}

}  // namespace
}  // namespace velmora::testing
