#include <gtest/gtest.h>

#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/series/binary_bbp/block_bbp.h"
#include "lumo/series/leaf_numbers.h"
#include "series_runs.h"

namespace lumo {
namespace {

using testing::exact_sum;
using testing::integer_value;

/// (a - k) / (k^2 + 1) / r^k: terms of either sign, one a leaf.
template <typename wtype>
class SignedTerms final : public BinaryBBP<wtype> {
 public:
    SignedTerms(const GeometricRatio<wtype>& r, upL_t change)
        : BinaryBBP<wtype>(r,
                           DoubleDouble(r.power) * log(DoubleDouble::from_count(r.root)) +
                               DoubleDouble(r.shift) * LN2_PAIR,
                           31, 2),
          sign_change(change) {}
    DoubleDouble block_size(upL_t a, upL_t b) const override {
        double size = 0;
        for (upL_t k = a; k < b; ++k) size += std::log(static_cast<double>(k) * static_cast<double>(k) + 1);
        return DoubleDouble::from_count(b - a) * this->rates.size + DoubleDouble(size);
    }
    void fraction(LeafTerm<wtype>& out, upL_t k) const override {
        out.P[0] = static_cast<wtype>(k < sign_change ? sign_change - k : k - sign_change);
        out.PL = out.P[0] == 0 ? 0 : 1;
        out.P_positive = k <= sign_change;
        out.R[0] = static_cast<wtype>(k);
        out.RL = multiply_add(out.R, 1, k, 1);
    }

 private:
    upL_t sign_change;
};

template <typename T>
class BinaryBBPTest : public ::testing::Test {};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(BinaryBBPTest, WordTypes);

TYPED_TEST(BinaryBBPTest, EveryCutGivesTheExactParts) {
    using Ratio = GeometricRatio<TypeParam>;
    struct Case {
        upL_t a, b, tds, levels;
    };
    for (const Ratio ratio : {Ratio{1, 0, 1}, Ratio{1, 0, 77}, Ratio{3, 1, 0}, Ratio{4294967295u, 2, 4}}) {
        const SignedTerms<TypeParam> series(ratio, 40);
        for (const Case c :
             {Case{1, 2, 1, 0}, Case{40, 41, 2, 0}, Case{1, 4, 1, 0}, Case{2, 39, 1, 0}, Case{1, 1000, 2, 1},
              Case{1, 1001, 2, 0}, Case{30, 4127, 3, 1}, Case{35, 6000, 16, 2}}) {
            SCOPED_TRACE(::testing::Message() << ratio.root << " " << ratio.shift << ": " << c.a << " " << c.b
                                              << " tds " << c.tds << " levels " << c.levels);
            const auto expected = exact_sum(series, c.a, c.b);
            const testing::BlockRun<TypeParam, BlockBBP<TypeParam>> run(
                series, Region(c.a, c.b), c.tds, c.levels, true, process_parallelizer());
            EXPECT_EQ(integer_value<TypeParam>(run.parts.P), expected.P);
            EXPECT_EQ(integer_value<TypeParam>(run.parts.Q), expected.Q);
            EXPECT_EQ(integer_value<TypeParam>(run.parts.R), expected.R);
            for (const auto* part : {&run.parts.P, &run.parts.Q, &run.parts.R})
                EXPECT_EQ(part->hash_error(), 0u);
        }
    }
}

TYPED_TEST(BinaryBBPTest, PowersOfEveryLengthThatHalvingGives) {
    const GeometricRatio<TypeParam> ratio{7, 3, 2};
    const SignedTerms<TypeParam> series(ratio, 1);
    std::vector<std::uint64_t> bytes((1 << 17) + 16);
    Multiply::ensure_tables(1 << 20);
    const MultiplyContext ctx{1,      &serial_parallelizer(), 0, 0, bytes.data() + bp_prefix(bytes.data()),
                              1 << 20};
    for (const upL_t terms : {1, 2, 3, 5, 64, 1000, 1023, 1025}) {
        std::vector<TypeParam> words(PowerTable<TypeParam>::storage_words(series, terms) + 2 * 600 + 64);
        TypeParam* start = words.data() + bp_prefix(words.data());
        const ExactFloat<TypeParam> storage(start + 1200,
                                            PowerTable<TypeParam>::storage_words(series, terms));
        const PowerTable<TypeParam> table(ctx, series, terms, storage);
        ExactFloat<TypeParam> A(start, 16), T(start + 16, 1184);
        *A.T = 5;
        A.L = 1;
        A.update_hash();
        mpz_class power;
        // Both lengths of every level.
        for (upL_t shorter = terms, longer = terms; longer > 1; shorter /= 2, longer = right_terms(longer)) {
            for (const upL_t part : {shorter, longer}) {
                if (part < 2) continue;
                const upL_t n = right_terms(part);
                table.scale(ctx, T, A, n);
                mpz_ui_pow_ui(power.get_mpz_t(), 7, 3 * n);
                EXPECT_EQ(integer_value<TypeParam>(T), (5 * power) << (2 * n)) << terms << " " << n;
                EXPECT_EQ(T.hash_error(), 0u);
            }
        }
        table.whole_power(ctx, T);
        mpz_ui_pow_ui(power.get_mpz_t(), 7, 3 * terms);
        EXPECT_EQ(integer_value<TypeParam>(T), power);
    }
}

}  // namespace
}  // namespace lumo
