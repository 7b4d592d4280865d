// Filling, copying, shifting, comparing, hashing.
#include <gtest/gtest.h>

#include "gmp_words.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/numbers/words/words.h"
#include "pool_context.h"
#include "word_arrays.h"
#include "word_types.h"

namespace lumo {
namespace {

using namespace testing;

template <typename wtype>
class Words : public WordTest<wtype> {};
TYPED_TEST_SUITE(Words, WordTypes);

TYPED_TEST(Words, FillCopyAndComplementTouchExactlyTheirRange) {
    using wtype = TypeParam;
    for (upL_t L : {0, 1, 31, 16384, 16500, 300001})
        for (upL_t offset : {1, 5})
            for (upL_t tds : ALL_TDS) {
                const auto a = shaped_words<wtype>(Shape::random, L + 16, this->random);
                auto expected = a, t = a;
                auto* const T = t.data() + offset;
                const auto E = expected.begin() + static_cast<long>(offset);
                bp_fill(T, L, wtype(0x5b), pool_context(tds));
                std::fill(E, E + static_cast<long>(L), 0x5b);
                ASSERT_EQ(t, expected) << L;
                bp_not(T, a.data(), L, pool_context(tds));
                std::transform(a.begin(), a.begin() + static_cast<long>(L), E, [](wtype x) { return ~x; });
                ASSERT_EQ(t, expected) << L;
                bp_copy(T, a.data() + 3, L, pool_context(tds));
                std::copy_n(a.begin() + 3, L, E);
                ASSERT_EQ(t, expected) << L;
                bp_zero(T, L, pool_context(tds));
                std::fill(E, E + static_cast<long>(L), 0);
                ASSERT_EQ(t, expected) << L;
            }
}

TYPED_TEST(Words, LongCopyDownwardsMayOverlap) {
    using wtype = TypeParam;
    const upL_t L = (upL_t(1) << 21) / sizeof(wtype);
    for (upL_t distance : {1, 4, 100}) {
        const auto a = shaped_words<wtype>(Shape::random, L + distance, this->random);
        auto t = a;
        bp_copy(t.data(), t.data() + distance, L);
        EXPECT_TRUE(
            std::equal(t.begin(), t.begin() + static_cast<long>(L), a.begin() + static_cast<long>(distance)));
    }
}

TYPED_TEST(Words, StripFindsTheTopWordThatDiffers) {
    using wtype = TypeParam;
    for (upL_t L : {1, 100, 70000})
        for (upL_t top : {upL_t(0), upL_t(1), L / 3, L - 1, L}) {
            std::vector<wtype> a(L, 9);
            if (top != 0) a[top - 1] = 8;
            for (upL_t tds : ALL_TDS) EXPECT_EQ(bp_strip(wtype(9), a.data(), L, pool_context(tds)), top) << L;
        }
    EXPECT_EQ(bp_strip<wtype>(0, nullptr, 0), 0u);
}

TYPED_TEST(Words, ShiftsAndComparisonsAgreeWithGmp) {
    using wtype = TypeParam;
    for (upL_t L : {1, 2, 9})
        for (unsigned bits : {0u, 1u, 17u, WordTraits<wtype>::bits - 1})
            for (Shape shape : ALL_SHAPES) {
                const auto a = shaped_words<wtype>(shape, L, this->random);
                const mpz_class x = to_mpz(a.data(), L);
                auto left = a, right = a;
                left.push_back(bp_shift_left(left.data(), left.data(), L, bits));
                EXPECT_EQ(to_mpz(left.data(), L + 1), x << bits);
                bp_shift_right(right.data(), right.data(), L, bits);
                EXPECT_EQ(to_mpz(right.data(), L), x >> bits);
                const auto b = shaped_words<wtype>(Shape::sparse, L, this->random);
                EXPECT_EQ(bp_compare(a.data(), b.data(), L), sgn(mpz_class(x - to_mpz(b.data(), L))));
                EXPECT_EQ(bp_compare(a.data(), a.data(), L), 0);
            }
}

/// Residue of h r^L + sum of a[i] r^i.
template <typename wtype>
std::uint64_t true_hash(std::uint64_t h, const mpz_class& r, const std::vector<wtype>& a) {
    mpz_class value = h % Hash61::MODULUS;
    for (upL_t i = a.size(); i-- > 0;) value = (value * r + to_mpz(&a[i], 1)) % mpz_class(Hash61::MODULUS);
    return value.get_ui();
}

TYPED_TEST(Words, HashIsTheResidueHoweverCut) {
    using wtype = TypeParam;
    const mpz_class base = mpz_class(1) << WordTraits<wtype>::bits;
    for (upL_t L : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 63, 9999, 10000, 10032, 40001})
        for (Shape shape : ALL_SHAPES) {
            const auto a = shaped_words<wtype>(shape, L, this->random);
            const std::uint64_t r = this->random();
            for (std::uint64_t h : {std::uint64_t(0), ~std::uint64_t(0), std::uint64_t(this->random())}) {
                const std::uint64_t expected = true_hash(h, base, a),
                                    expected_radix = true_hash(h, mpz_class(r), a);
                for (upL_t tds : ALL_TDS) {
                    ASSERT_EQ(Hash61::canonical(bp_hash(h, a.data(), L, pool_context(tds))), expected) << L;
                    ASSERT_EQ(Hash61::canonical(bp_hash_radix(h, r, a.data(), L, pool_context(tds))),
                              expected_radix)
                        << L;
                }
            }
        }
}

TYPED_TEST(Words, HashArithmeticAgreesWithGmp) {
    using wtype = TypeParam;
    const mpz_class p(Hash61::MODULUS);
    std::vector<std::uint64_t> values = {0,    1, Hash61::MODULUS, Hash61::MODULUS - 1, Hash61::MODULUS + 8,
                                         ~0ull};
    for (int i = 0; i < 20; i++) values.push_back(this->random());
    for (std::uint64_t a : values) {
        for (std::uint64_t b : values) {
            EXPECT_EQ(Hash61::canonical(Hash61::mul(a, b)), mpz_class(mpz_class(a) * b % p).get_ui());
            EXPECT_EQ(Hash61::canonical(Hash61::add(a, b)), mpz_class((mpz_class(a) + b) % p).get_ui());
            EXPECT_EQ(Hash61::canonical(Hash61::add(Hash61::sub(a, b), b)), Hash61::canonical(a));
        }
        EXPECT_TRUE(Hash61::is_zero(Hash61::add(a, Hash61::negate(a))));
    }
    for (spL_t e : {1, 5, 1000, 123456789})
        EXPECT_EQ(Hash61::canonical(Hash61::mul(Hash61::word_power<wtype>(e), Hash61::word_power<wtype>(-e))),
                  1u);
}

TYPED_TEST(Words, TestPatternIsTheSameHoweverCut) {
    using wtype = TypeParam;
    const wtype seed = static_cast<wtype>(this->random());
    wtype first;
    bp_fill_test(&first, 1, wtype(0));
    EXPECT_EQ(first, static_cast<wtype>(sizeof(wtype) == 4 ? 4214894296u : 10479664857211350744u));
    for (upL_t L : {1, 999, 1000, 30011}) {
        std::vector<wtype> serial(L);
        const std::uint64_t hash = bp_fill_test(serial.data(), L, seed);
        EXPECT_TRUE(Hash61::equal(hash, bp_hash(0, serial.data(), L)));
        for (upL_t tds : ALL_TDS) {
            std::vector<wtype> t(L);
            EXPECT_TRUE(Hash61::equal(bp_fill_test(t.data(), L, seed, pool_context(tds)), hash));
            EXPECT_EQ(t, serial);
        }
    }
}

}  // namespace
}  // namespace lumo
