#include <gtest/gtest.h>

#include "gmp_words.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/multiply.h"
#include "lumo/series/brent_mcmillan/sum_ab.h"
#include "pool_context.h"
#include "scratch.h"
#include "word_types.h"

namespace lumo::testing {
namespace {

struct ExactAB {
    mpz_class T, V, C, D;
};

mpz_class power_of_two(upL_t bits) {
    return mpz_class(1) << bits;
}

/// The recurrence itself.
ExactAB exact_ab(unsigned k, upL_t a, upL_t b) {
    if (b - a == 1) return {power_of_two(2 * k), power_of_two(2 * k), 1, mpz_class(a)};
    const upL_t m = a + (b - a + 2) / 3;
    const ExactAB x = exact_ab(k, a, m);
    const ExactAB y = exact_ab(k, m, b);
    const mpz_class S = power_of_two(2 * k * (m - a));
    return {x.T * y.D * y.D + S * y.T, x.V * y.D * y.D * y.D + S * (x.C * y.D * y.T + x.D * y.V),
            x.C * y.D + y.C * x.D, x.D * y.D};
}

template <typename wtype>
class BlockRunAB {
 public:
    BlockRunAB(unsigned k, Region range, upL_t tds, bool need_C)
        : series(k),
          plan(series, range, tds),
          words((plan.sizes.sum() + plan.work_words) * sizeof(wtype)),
          scratch(plan.byte_scratch) {
        LinearWordBuffer<wtype> buffer(words.words<wtype>(), plan.sizes.sum() + plan.work_words);
        parts = cut_parts(buffer, plan.sizes);
        parts.need_C = need_C;
        Multiply::ensure_tables(plan.product_words * WordTraits<wtype>::bits);
        plan.run(scratch.context(tds, process_parallelizer()), parts, buffer);
        EXPECT_TRUE(words.intact() && scratch.intact());
    }
    SeriesBrentMcMillanAB<wtype> series;

 private:
    BlockAB<wtype> plan;
    Scratch words, scratch;

 public:
    PartsAB<wtype> parts;
};

template <typename T>
class BrentMcMillanAB : public WordTest<T> {};
TYPED_TEST_SUITE(BrentMcMillanAB, WordTypes);

TYPED_TEST(BrentMcMillanAB, EveryCutIsExactAndWithinItsSize) {
    constexpr upL_t FAR = upL_t(1) << 40;
    struct Case {
        unsigned k;
        upL_t a, b, tds;
    };
    // Leaves, splits, forks; before, around and beyond the term n, and where i^2 takes two words.
    for (const Case c : {Case{5, 1, 2, 1}, Case{5, 1, 33, 1}, Case{5, 1, 34, 2}, Case{9, 1, 400, 1},
                         Case{9, 300, 1400, 2}, Case{12, 1, 3000, 3}, Case{4, 500, 2600, 7},
                         Case{20, 17, 5000, 5}, Case{30, FAR, FAR + 1200, 2}, Case{50, FAR, FAR + 70, 1}}) {
        const ExactAB exact = exact_ab(c.k, c.a, c.b);
        for (const bool need_C : {true, false}) {
            SCOPED_TRACE(::testing::Message() << c.k << " " << c.a << " " << c.b << " " << c.tds);
            const BlockRunAB<TypeParam> run(c.k, {c.a, c.b}, c.tds, need_C);
            const auto& s = run.series;
            const auto check = [&](const ExactFloat<TypeParam>& part, const mpz_class& value, upL_t words) {
                EXPECT_EQ(integer_value<TypeParam>(part), value);
                EXPECT_EQ(part.hash_error(), 0u);
                const upL_t bits = mpz_sizeinbase(value.get_mpz_t(), 2);
                EXPECT_LE(bits, words * this->W);
                EXPECT_GE(bits + 400 + bits / 8, words * this->W) << "a size far too large";
            };
            check(run.parts.T, exact.T, s.T_words(c.a, c.b));
            check(run.parts.V, exact.V, s.V_words(c.a, c.b));
            check(run.parts.D, exact.D, s.D_words(c.a, c.b));
            if (need_C) check(run.parts.C, exact.C, s.C_words(c.a, c.b));
        }
    }
}

TYPED_TEST(BrentMcMillanAB, TermsAndBlocksReachThePrecision) {
    for (const upL_t p : {3, 40, 3000}) {
        const DoubleDouble size = words_to_size<TypeParam>(p);
        for (const unsigned more : {0u, 1u}) {
            unsigned k = more;
            while (8.0 * static_cast<double>(upL_t(1) << k) < size.hi) ++k;
            const SeriesBrentMcMillanAB<TypeParam> series(k);
            const SumAB<TypeParam> sum(series, p, 2);
            upL_t next = 1;
            for (const Region& block : sum.blocks()) {
                EXPECT_EQ(block.s, next);
                next = block.e;
            }
            EXPECT_EQ(next, sum.terms + 1);
            // n^2 / i^2 products against e^(2n): the last term counts no more, the one before n does.
            EXPECT_EQ(series.remaining(upL_t(1) << k, size).hi, size.hi);
            EXPECT_LT(series.remaining(sum.terms, size).hi, 10);
        }
    }
}

// What lies below the limit is dropped together with the words that a hash could be compared with.
TYPED_TEST(BrentMcMillanAB, AJoinChecksWhatItCuts) {
    using Parts = PartsAB<TypeParam>;
    const ParallelContext serial;
    // A tail as long as the limit, whose products are cut, and a short one, with which sums are.
    const auto check = [&](const Region& left, const Region& right, upL_t limit) {
        for (const auto& [part, in_tail] : {std::pair(&Parts::T, false),
                                            {&Parts::V, false},
                                            {&Parts::C, false},
                                            {&Parts::D, false},
                                            {&Parts::T, true},
                                            {&Parts::V, true},
                                            {&Parts::D, true}}) {
            BlockRunAB<TypeParam> block(9, left, 1, true);
            const BlockRunAB<TypeParam> rest(9, right, 1, false);
            std::vector<TypeParam> room(3 * (limit + 3));
            Parts tail;
            TypeParam* at = room.data();
            for (const auto each : {&Parts::T, &Parts::V, &Parts::D}) {
                ExactFloat<TypeParam> number = rest.parts.*each;
                cut_checked(number, limit, right, serial);
                tail.*each = ExactFloat<TypeParam>(at, limit + 3);
                (tail.*each).set_ExactFloat(number);
                at += limit + 3;
            }
            const auto& series = block.series;
            const SizesAB sizes{series.T_words(left.s, left.e), series.V_words(left.s, left.e),
                                series.C_words(left.s, left.e), series.D_words(left.s, left.e)};
            const TempsAB temps = join_temps_ab<TypeParam>(sizes, limit);
            const upL_t longest = std::max(temps.G, temps.X);
            Scratch words(temps.sum() * sizeof(TypeParam)), scratch(merge_scratch_ab<TypeParam>(longest, 1));
            Multiply::ensure_tables((longest + 8) * WordTraits<TypeParam>::bits);
            const auto join = [&] {
                LinearWordBuffer<TypeParam> buffer(words.template words<TypeParam>(), temps.sum());
                join_ab(scratch.context(), 18 * left.terms(), left, block.parts, tail, limit,
                        cut_work(buffer, temps));
            };
            ExactFloat<TypeParam>& number = (in_tail ? tail : block.parts).*part;
            number.T[number.L / 2] ^= 4;
            EXPECT_THROW(join(), BSRModularCheckFailedException) << limit << " " << in_tail;
            EXPECT_TRUE(words.intact() && scratch.intact());
        }
    };
    check({1, 400}, {400, 1400}, 20);
    check({1, 400}, {400, 402}, 120);
}

}  // namespace
}  // namespace lumo::testing
