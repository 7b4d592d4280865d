// The tables, the cut rules and the products that go through them.
#include "lumo/multiply/multiply.h"

#include "lumo/multiply/algorithm_registry.h"
#include "lumo/multiply/fft/fft_algorithm.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_table.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "lumo/multiply/partial_cut.h"
#include "pool_context.h"
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

TYPED_TEST(Products, TableKeepsItsRowsInOrderAndItsWalksCoverAllBelow) {
    using wtype = TypeParam;
    const auto& bkt = *find_algorithm("BKT")->template basic<wtype>();
    const auto& fft = *find_algorithm("FFT")->template basic<wtype>();
    AlgorithmTableB<wtype> table("Test");
    table.add(50, nullptr);
    EXPECT_EQ(table.max_length(), 0u);
    table.add(50, &bkt);
    EXPECT_EQ(refusal([&] { table.add(50, &fft); }), "AlgorithmTable::add() Thresholds must be increasing.");
    table.add(2000, &fft);
    EXPECT_EQ(&table.get_algorithm(50), &bkt);
    EXPECT_EQ(&table.get_algorithm(51), &fft);
    BufferSizes sizes, below, above;
    const upL_t total = table.max_buffer_sizes(sizes, 700, 1);
    EXPECT_EQ(total, std::max(bkt.max_buffer_sizes(below, 50, 1), fft.max_buffer_sizes(above, 700, 1)));
    below.merge(above);
    EXPECT_TRUE(sizes.array_bytes == below.array_bytes && sizes.scratch_bytes == below.scratch_bytes);
    EXPECT_EQ(table.max_buffer_size(50, 1, true), bkt.max_buffer_size(50, 1));
    const std::string why = " Product is too large.";
    EXPECT_EQ(refusal([&] { table.get_algorithm(2001); }), "AlgorithmTable::get_algorithm()" + why);
    EXPECT_EQ(refusal([&] { table.max_buffer_sizes(sizes, 2001, 1); }),
              "AlgorithmTableB::max_buffer_sizes()" + why);
    EXPECT_EQ(refusal([&] { table.max_buffer_size(2001, 1, true); }),
              "AlgorithmTableB::max_buffer_size()" + why);
    // One of its own, up to where that ends.
    table.add(TableRow::NO_LIMIT / this->W, std::make_unique<const FftAlgorithm<wtype>>());
    EXPECT_NE(&table.get_algorithm(2001), &fft);
    EXPECT_EQ(table.max_length(), FFT_MAX_BITS / this->W);
}

TYPED_TEST(Products, TableOfTheBuildSwitchesAtItsThresholds) {
    using wtype = TypeParam;
    ::testing::internal::CaptureStdout();
    const auto skipped = build_algorithm_table<wtype>("Test", {{"???", 100}, {"BKT", 200000}});
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Skipping unknown algorithm: ???\n");
    EXPECT_EQ(skipped.max_length(), 65536 / this->W);

    EXPECT_STREQ(Multiply::get_algorithm<wtype>(4992 / this->W).tag, "BKT");
    EXPECT_STREQ(Multiply::get_algorithm<wtype>(4992 / this->W + 1).tag, "FFT");
    std::string rows;
    for (const auto& row : basic_algorithm_table<wtype>().rows()) {
        EXPECT_EQ(find_algorithm(row.algorithm->tag)->template basic<wtype>(), row.algorithm);
        rows += row.algorithm->tag + (" " + std::to_string(row.threshold * this->W)) + "; ";
    }
    EXPECT_EQ(rows, "BKT 4992; FFT 1474560; VT3 329853488332800; N64 4035225266123964416; ");
    EXPECT_EQ(find_algorithm("XYZ"), nullptr);
    EXPECT_THROW(Multiply::get_algorithm<wtype>(Multiply::max_length<wtype>() + 1), LimitExceededException);
}

// A scratch sized for the longest product serves every shorter one.
TYPED_TEST(Products, ProductsAtEveryThresholdAgreeWithGmp) {
    using wtype = TypeParam;
    const upL_t longest = 300000 / this->W, last_bkt = 4992 / this->W;
    const Scratch memory(Multiply::max_buffer_size<wtype>(2 * longest, 1));
    for (upL_t n :
         {upL_t(2), upL_t(3), last_bkt - 1, last_bkt, last_bkt + 1, upL_t(16384) / this->W, longest})
        for (upL_t AL : {n / 2, n - 1, n / 3 + 1})
            for (Shape shape : ALL_SHAPES) {
                const auto a = this->operand(shape, AL), b = this->operand(n - AL);
                std::vector<wtype> t(2 * n);
                Multiply::mul(memory.context(), t.data(), a.data(), a.size(), b.data(), b.size());
                ASSERT_EQ(to_mpz(t.data(), n), product_of(a, b)) << a.size() << " x " << b.size();
                Multiply::sqr(memory.context(), t.data(), a.data(), AL);
                ASSERT_EQ(to_mpz(t.data(), 2 * AL), product_of(a, a)) << AL;
            }
    EXPECT_TRUE(memory.intact());
}

// The cut operands still hold all that the window needs, but for two units of its lowest word.
TYPED_TEST(Products, CutsLoseNoMoreThanTheCarriesOfDroppedWords) {
    using wtype = TypeParam;
    const auto check = [](const auto& cut, const mpz_class& window, const mpz_class& left, upL_t words,
                          int most) {
        mpz_class missing = window - left;
        mpz_fdiv_r_2exp(missing.get_mpz_t(), missing.get_mpz_t(), words * WordTraits<wtype>::bits);
        ASSERT_LE(missing, most);
        ASSERT_EQ(cut.L - cut.s, words);
        ASSERT_LE(cut.L, cut.key());
    };
    for (int round = 0; round < 4000; round++) {
        const auto a = this->operand(1 + this->random() % 12), b = this->operand(1 + this->random() % 12);
        const upL_t n = a.size() + b.size(), L = 1 + this->random() % n, s = this->random() % L;
        SCOPED_TRACE(::testing::Message() << a.size() << " x " << b.size() << " window " << s << " to " << L);
        const MulCut<wtype> cut(s, L, a.data(), a.size(), b.data(), b.size());
        ASSERT_TRUE(cut.AL >= 1 && cut.BL >= 1 && cut.AL <= cut.L && cut.BL <= cut.L && cut.key() <= n);
        const std::vector<wtype> ca(cut.A, cut.A + cut.AL), cb(cut.B, cut.B + cut.BL);
        check(cut, product_window(a, b, s, L), product_window(ca, cb, cut.s, cut.L), L - s,
              s <= std::min(a.size(), b.size()) ? 0 : 2);

        const upL_t M = 1 + this->random() % (2 * a.size()), r = this->random() % M;
        const SqrCut<wtype> square(r, M, a.data(), a.size());
        const std::vector<wtype> cs(square.A, square.A + square.AL);
        check(square, product_window(a, a, r, M), product_window(cs, cs, square.s, square.L), M - r, 2);
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
    for (upL_t bits : {3000, 4992 + 64, 9000, 60000})
        for (int round = 0; round < 40; round++) {
            const upL_t n = bits / this->W, AL = 1 + this->random() % (n - 1), p = this->random() % n;
            const auto a = this->operand(AL), b = this->operand(n - AL);
            const auto check = [&](const mpz_class& product, upL_t length, const std::vector<wtype>& t) {
                const mpz_class missing =
                    window_of<wtype>(product, length - t.size(), length) - to_mpz(t.data(), t.size());
                ASSERT_TRUE(missing >= 0 && missing <= 2) << length << " kept " << t.size();
            };
            const upL_t kept = std::min(n, p + 2);
            const Scratch memory(Multiply::partial_buffer_size<wtype>(p, AL, n - AL, 1));
            std::vector<wtype> t(kept), small(kept), square(std::min(2 * AL, kept));
            Multiply::mul_partial(memory.context(), t.data(), n - kept, n, a.data(), AL, b.data(), n - AL);
            check(product_of(a, b), n, t);
            Multiply::mul_small(memory.context(), small.data(), n - kept, n, a.data(), AL, b.data(), n - AL);
            ASSERT_EQ(small, t);
            ASSERT_TRUE(memory.intact());
            const Scratch square_memory(Multiply::max_buffer_size<wtype>(2 * AL, 1));
            Multiply::sqr_partial(square_memory.context(), square.data(), 2 * AL - square.size(), 2 * AL,
                                  a.data(), AL);
            check(product_of(a, a), 2 * AL, square);
        }
}

TYPED_TEST(Products, TablesInACallersBuffer) {
    using wtype = TypeParam;
    for (const upL_t bits : {100000, 4000000}) {
        const upL_t n = bits / 2 / WordTraits<wtype>::bits, bytes = Multiply::table_bytes(bits);
        const Scratch tables(bytes), memory(Multiply::max_buffer_size<wtype>(2 * n, 1));
        const auto a = this->operand(Shape::random, n);
        std::vector<wtype> t(2 * n);
        for (const upL_t tds : {1, 3}) {
            Multiply::build_tables({tables.data(), bytes}, bits, testing::pool_context(tds));
            Multiply::mul(memory.context(), t.data(), a.data(), n, a.data(), n);
            EXPECT_EQ(to_mpz(t.data(), 2 * n), product_of(a, a));
            EXPECT_TRUE(tables.intact());
            if (bits > FFT_TABLE_BITS) {
                const unsigned prime = vt3_prime_set(6, 1, 10)->index[0];
                const upL_t place =
                    upL_t(vt3_prime_table(prime, vt3_kernels().form, 5).roots) - upL_t(tables.data());
                EXPECT_LT(place, bytes);
            }
            Multiply::release_tables();
        }
    }
    Multiply::ensure_tables(1 << 22);
}

}  // namespace
}  // namespace lumo
