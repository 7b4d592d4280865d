// The tables, the cut rules and the products that go through them.
#include "lumo/multiply/multiply.h"
#include "lumo/multiply/algorithm_registry.h"
#include "lumo/multiply/partial_cut.h"
#include "products.h"

namespace lumo {
namespace {

using namespace testing;

template <typename wtype>
class Products : public WordTest<wtype> {
 protected:
    std::vector<wtype> operand(Shape shape, upL_t L) { return shaped_words<wtype>(shape, L, this->random); }
    std::vector<wtype> operand(upL_t L) { return operand(ALL_SHAPES[this->random() % 5], L); }
    static void SetUpTestSuite() { Multiply::ensure_tables(1 << 22); }
};
TYPED_TEST_SUITE(Products, WordTypes);

/// An algorithm that knows its name and what it was asked for.
template <typename wtype>
class RecordingAlgorithm final : public BasicAlgorithm<wtype> {
 public:
    RecordingAlgorithm(const char* key, upL_t limit_bits, BufferSizes sizes)
        : BasicAlgorithm<wtype>(limit_bits, key, nullptr, nullptr, nullptr), own(sizes) {}
    void ensure_tables(upL_t) const override {}
    upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t) const override {
        asked = length;
        sizes = own;
        return sizes.total();
    }
    void params(TransformHolder<wtype>&, upL_t, upL_t) const override {}
    void sqr_partial(const MultiplyContext&, wtype*, upL_t, upL_t, const wtype*, upL_t) const override {}
    void mul_partial(const MultiplyContext&, wtype*, upL_t, upL_t, const wtype*, upL_t, const wtype*,
                     upL_t) const override {}
    upL_t max_buffer_size(upL_t length, upL_t) const override {
        asked = length;
        return own.scratch_bytes;
    }
    BufferSizes own;
    mutable upL_t asked = 0;
};

TYPED_TEST(Products, TableKeepsItsRowsInOrderAndItsWalksCoverAllBelow) {
    using wtype = TypeParam;
    constexpr upL_t bits = WordTraits<wtype>::bits;
    const RecordingAlgorithm<wtype> a("AAA", 100 * bits, {1000, 5}), b("BBB", 1000 * bits, {10, 900});
    EXPECT_STREQ(a.description, "AAA");
    AlgorithmTableB<wtype> table("Test");
    table.add(50, nullptr);
    EXPECT_EQ(table.max_length(), 0u);
    table.add(50, &a);
    EXPECT_EQ(refusal([&] { table.add(50, &b); }), "AlgorithmTable::add() Thresholds must be increasing.");
    table.add(TableRow::NO_LIMIT / bits, &b);
    EXPECT_EQ(table.max_length(), 1000u);
    EXPECT_EQ(&table.get_algorithm(50), &a);
    EXPECT_EQ(&table.get_algorithm(51), &b);
    BufferSizes sizes;
    EXPECT_EQ(table.max_buffer_sizes(sizes, 700, 1), 2005u);
    EXPECT_EQ(sizes.array_bytes, 1000u);
    EXPECT_EQ(sizes.scratch_bytes, 900u);
    EXPECT_EQ(a.asked, 50u);
    EXPECT_EQ(b.asked, 700u);
    EXPECT_EQ(table.max_buffer_size(50, 1, true), 5u);
    EXPECT_EQ(table.max_buffer_size(51, 1, true), 900u);
    const std::string why = " Product is too large.";
    EXPECT_EQ(refusal([&] { table.get_algorithm(1001); }), "AlgorithmTable::get_algorithm()" + why);
    EXPECT_EQ(refusal([&] { table.max_buffer_sizes(sizes, 1001, 1); }),
              "AlgorithmTableB::max_buffer_sizes()" + why);
    EXPECT_EQ(refusal([&] { table.max_buffer_size(1001, 1, true); }),
              "AlgorithmTableB::max_buffer_size()" + why);
    table.add(2000, std::make_unique<const RecordingAlgorithm<wtype>>("CCC", 3000 * bits, BufferSizes{}));
    EXPECT_STREQ(table.get_algorithm(1001).tag, "CCC");
}

TYPED_TEST(Products, TableOfTheBuildSwitchesAtItsThresholds) {
    using wtype = TypeParam;
    constexpr upL_t bits = WordTraits<wtype>::bits;
    ::testing::internal::CaptureStdout();
    const auto skipped = build_algorithm_table<wtype>("Test", {{"???", 100}, {"BKT", 200000}});
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Skipping unknown algorithm: ???\n");
    EXPECT_EQ(skipped.max_length(), 65536 / bits);

    EXPECT_STREQ(Multiply::get_algorithm<wtype>(4992 / bits).tag, "BKT");
    EXPECT_STREQ(Multiply::get_algorithm<wtype>(4992 / bits + 1).tag, "FFT");
    for (const auto& row : basic_algorithm_table<wtype>().rows()) {
        EXPECT_EQ(find_algorithm(row.algorithm->tag)->template basic<wtype>(), row.algorithm);
        EXPECT_LE(row.threshold * bits, row.algorithm->max_bits);
    }
    EXPECT_EQ(find_algorithm("XYZ"), nullptr);
    EXPECT_THROW(Multiply::get_algorithm<wtype>(Multiply::max_length<wtype>() + 1), LimitExceededException);
}

// A scratch sized for the longest product serves every shorter one.
TYPED_TEST(Products, ProductsAtEveryThresholdAgreeWithGmp) {
    using wtype = TypeParam;
    constexpr upL_t bits = WordTraits<wtype>::bits;
    const upL_t longest = 300000 / bits;
    const Scratch memory(Multiply::max_buffer_size<wtype>(longest, 1));
    for (upL_t n : {upL_t(2), upL_t(3), 2048 / bits + 1, 4992 / bits - 1, 4992 / bits, 4992 / bits + 1,
                    16384 / bits, longest})
        for (upL_t AL : {n / 2, n - 1, n / 3 + 1})
            for (Shape shape : ALL_SHAPES) {
                const auto a = this->operand(shape, AL), b = this->operand(n - AL);
                std::vector<wtype> t(n);
                Multiply::mul(memory.context(), t.data(), a.data(), a.size(), b.data(), b.size());
                ASSERT_EQ(to_mpz(t.data(), n), product_of(a, b)) << a.size() << " x " << b.size();
                if (2 * AL > longest) continue;
                std::vector<wtype> square(2 * AL);
                Multiply::sqr(memory.context(), square.data(), a.data(), AL);
                ASSERT_EQ(to_mpz(square.data(), 2 * AL), product_of(a, a)) << AL;
            }
    EXPECT_TRUE(memory.intact());
    EXPECT_THROW(Multiply::mul(MultiplyContext(), static_cast<wtype*>(nullptr), static_cast<wtype*>(nullptr),
                               4992 / bits, static_cast<wtype*>(nullptr), upL_t(1)),
                 BufferTooSmallException);
}

// The cut operands still hold all that the window needs, but for two units of its lowest word.
TYPED_TEST(Products, CutsLoseNoMoreThanTheCarriesOfDroppedWords) {
    using wtype = TypeParam;
    for (int round = 0; round < 4000; round++) {
        const auto a = this->operand(1 + this->random() % 12);
        const auto b = this->operand(1 + this->random() % 12);
        const upL_t n = a.size() + b.size();
        const upL_t L = 1 + this->random() % n, s = this->random() % L;
        const mpz_class modulus = mpz_class(1) << ((L - s) * WordTraits<wtype>::bits);
        SCOPED_TRACE(::testing::Message() << a.size() << " x " << b.size() << " window " << s << " to " << L);

        const MulCut<wtype> cut(s, L, a.data(), a.size(), b.data(), b.size());
        ASSERT_EQ(cut.L - cut.s, L - s);
        ASSERT_LE(cut.L, cut.key());
        ASSERT_LE(cut.key(), n);
        ASSERT_TRUE(cut.AL >= 1 && cut.BL >= 1 && cut.AL <= cut.L && cut.BL <= cut.L);
        const std::vector<wtype> ca(cut.A, cut.A + cut.AL), cb(cut.B, cut.B + cut.BL);
        mpz_class missing = product_window(a, b, s, L) - product_window(ca, cb, cut.s, cut.L);
        mpz_fdiv_r(missing.get_mpz_t(), missing.get_mpz_t(), modulus.get_mpz_t());
        ASSERT_LE(missing, 2);
        if (s <= std::min(a.size(), b.size())) {
            ASSERT_EQ(missing, 0);
        }

        const upL_t square_L = 1 + this->random() % (2 * a.size()), square_s = this->random() % square_L;
        const SqrCut<wtype> square(square_s, square_L, a.data(), a.size());
        ASSERT_EQ(square.L - square.s, square_L - square_s);
        ASSERT_LE(square.L, square.key());
        const std::vector<wtype> cs(square.A, square.A + square.AL);
        missing = product_window(a, a, square_s, square_L) - product_window(cs, cs, square.s, square.L);
        mpz_fdiv_r(missing.get_mpz_t(), missing.get_mpz_t(),
                   mpz_class(mpz_class(1) << ((square_L - square_s) * WordTraits<wtype>::bits)).get_mpz_t());
        ASSERT_LE(missing, 2);
    }
}

TYPED_TEST(Products, CutKeepsOnlyWhatReachesTheWindow) {
    using wtype = TypeParam;
    const std::vector<wtype> a(100), b(3);
    const auto cut = [&](upL_t s, upL_t L) { return MulCut<wtype>(s, L, a.data(), 100, b.data(), 3); };
    const auto high = cut(98, 103);
    EXPECT_TRUE(high.A == a.data() + 95 && high.AL == 5 && high.BL == 3 && high.s == 3);
    EXPECT_EQ(cut(102, 103).key(), 2u);
    EXPECT_EQ(cut(0, 2).key(), 4u);
    const SqrCut<wtype> square(150, 200, a.data(), 100);
    EXPECT_TRUE(square.A == a.data() + 50 && square.AL == 50);
}

TYPED_TEST(Products, PartialProductsThroughEveryRow) {
    using wtype = TypeParam;
    constexpr upL_t bits = WordTraits<wtype>::bits;
    for (upL_t n : {3000 / bits, 4992 / bits + 1, 9000 / bits, 60000 / bits})
        for (int round = 0; round < 40; round++) {
            const upL_t AL = 1 + this->random() % (n - 1);
            const auto a = this->operand(AL), b = this->operand(n - AL);
            const upL_t p = this->random() % n, kept = std::min(n, p + 2);
            const Scratch memory(Multiply::partial_buffer_size<wtype>(p, a.size(), b.size(), 1));
            std::vector<wtype> t(kept), small(kept);
            Multiply::mul_partial(memory.context(), t.data(), n - kept, n, a.data(), a.size(), b.data(),
                                  b.size());
            const mpz_class missing = product_window(a, b, n - kept, n) - to_mpz(t.data(), kept);
            ASSERT_TRUE(missing >= 0 && missing <= 2) << n << " kept " << kept;
            Multiply::mul_small(memory.context(), small.data(), n - kept, n, a.data(), a.size(), b.data(),
                                b.size());
            ASSERT_EQ(small, t);
            ASSERT_TRUE(memory.intact());

            const upL_t square_kept = std::min(2 * AL, kept);
            const Scratch square_memory(Multiply::max_buffer_size<wtype>(2 * AL, 1));
            Multiply::sqr_partial(square_memory.context(), t.data(), 2 * AL - square_kept, 2 * AL, a.data(),
                                  AL);
            const mpz_class lost =
                product_window(a, a, 2 * AL - square_kept, 2 * AL) - to_mpz(t.data(), square_kept);
            ASSERT_TRUE(lost >= 0 && lost <= 2) << AL << " kept " << square_kept;
        }
}

TYPED_TEST(Products, TablesInACallersBuffer) {
    using wtype = TypeParam;
    const upL_t n = 50000 / WordTraits<wtype>::bits;
    const Scratch tables(Multiply::table_bytes(100000)), memory(Multiply::max_buffer_size<wtype>(2 * n, 1));
    Multiply::build_tables({tables.data(), Multiply::table_bytes(100000)}, 100000, {});
    const auto a = this->operand(Shape::random, n);
    std::vector<wtype> t(2 * n);
    Multiply::mul(memory.context(), t.data(), a.data(), n, a.data(), n);
    EXPECT_EQ(to_mpz(t.data(), 2 * n), product_of(a, a));
    EXPECT_TRUE(tables.intact());
    Multiply::release_tables();
    Multiply::ensure_tables(1 << 22);
}

}  // namespace
}  // namespace lumo
