// Sums, differences, products by a word and ripples against GMP, serial and cut into blocks.
#include <gtest/gtest.h>

#include "gmp_words.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/words.h"
#include "pool_context.h"
#include "word_arrays.h"
#include "word_types.h"

namespace lumo {
namespace {

using namespace testing;

template <typename wtype>
class Carries : public WordTest<wtype> {
 protected:
    static mpz_class power(upL_t L) { return mpz_class(1) << (L * WordTraits<wtype>::bits); }
};
TYPED_TEST_SUITE(Carries, WordTypes);

// Around the unrolling, the least block, and where the last block is a word or two long.
constexpr upL_t LENGTHS[] = {0, 1, 2, 7, 8, 9, 17, 33, 1000, 8191, 8224, 16385, 16386, 24577, 24610, 70001};

TYPED_TEST(Carries, SumsAndDifferencesAgreeWithGmpHoweverCut) {
    using wtype = TypeParam;
    for (upL_t L : LENGTHS)
        // Ones and zeros with a carry: it crosses every block.
        for (Shape shape_a : ALL_SHAPES)
            for (Shape shape_b : {Shape::random, Shape::zeros, Shape::runs}) {
                const auto a = shaped_words<wtype>(shape_a, L, this->random);
                const auto b = shaped_words<wtype>(shape_b, L, this->random);
                const mpz_class x = to_mpz(a.data(), L), y = to_mpz(b.data(), L);
                for (upL_t tds : ALL_TDS)
                    for (wtype carry : {0, 1}) {
                        SCOPED_TRACE(::testing::Message()
                                     << "L " << L << " tds " << tds << " carry " << carry);
                        // Even lengths without a prefix, so that their blocks end where the list means them
                        // to.
                        std::vector<wtype> words(L + 35);
                        wtype* const t = words.data() + bp_prefix(words.data()) + (L % 2 == 0 ? 0 : 3);
                        const wtype out = bp_add(t, a.data(), b.data(), L, carry, pool_context(tds));
                        ASSERT_EQ(to_mpz(t, L) + out * this->power(L), x + y + carry);
                        auto in_place = a;
                        const wtype borrow =
                            bp_sub(in_place.data(), in_place.data(), b.data(), L, carry, pool_context(tds));
                        ASSERT_EQ(to_mpz(in_place.data(), L) - borrow * this->power(L), x - y - carry);
                    }
            }
}

TYPED_TEST(Carries, ProductsByAWordAgreeWithGmpHoweverCut) {
    using wtype = TypeParam;
    constexpr wtype ones = static_cast<wtype>(~wtype(0));
    for (upL_t L : {0, 1, 2, 3, 8, 33, 20001, 40033, 100003})
        for (Shape shape : ALL_SHAPES)
            for (wtype m : {wtype(0), wtype(3), wtype(ones / 3 * 2), ones}) {
                const auto a = shaped_words<wtype>(shape, L, this->random);
                const wtype c = static_cast<wtype>(this->random());
                const mpz_class expected = to_mpz(a.data(), L) * to_mpz(&m, 1) + to_mpz(&c, 1);
                for (upL_t tds : ALL_TDS) {
                    auto t = a;
                    t.push_back(bp_mul_uW(t.data(), t.data(), L, m, c, pool_context(tds)));
                    ASSERT_EQ(to_mpz(t.data(), L + 1), expected) << "L " << L << " tds " << tds << " m " << m;
                }
            }
}

// The product is a single bit at the top, so what enters each block ripples through all of it.
TYPED_TEST(Carries, ProductByAWordRipplesThroughEveryBlock) {
    using wtype = TypeParam;
    const upL_t L = 20000 * 4 + 2;
    const wtype m = static_cast<wtype>(0x9e3779b97f4a7c15u);
    const mpz_class product = this->power(L) / 2;
    const mpz_class quotient = product / to_mpz(&m, 1), rest = product % to_mpz(&m, 1);
    std::vector<wtype> a(L), expected(L + 1);
    mpz_export(a.data(), nullptr, -1, sizeof(wtype), 0, 0, quotient.get_mpz_t());
    expected[L - 1] = wtype(1) << (WordTraits<wtype>::bits - 1);
    for (upL_t tds : ALL_TDS) {
        std::vector<wtype> t(L);
        t.push_back(
            bp_mul_uW(t.data(), a.data(), L, m, static_cast<wtype>(rest.get_ui()), pool_context(tds)));
        EXPECT_EQ(t, expected) << tds;
    }
}

TYPED_TEST(Carries, ScalarsRippleAsFarAsTheyGo) {
    using wtype = TypeParam;
    using signed_word = typename WordTraits<wtype>::signed_word;
    constexpr auto least = std::numeric_limits<signed_word>::min();
    wtype untouched = 5;
    EXPECT_EQ(bp_add_scalar<wtype>(0, &untouched, 1), 0);
    EXPECT_EQ(bp_add_scalar<wtype>(9, &untouched, 0), 9);
    EXPECT_EQ(untouched, 5u);
    for (upL_t L : {1, 2, 5, 8191, 8192, 30000})
        for (Shape shape : ALL_SHAPES)
            for (signed_word c :
                 {signed_word(1), signed_word(-1), signed_word(2), least, signed_word(least + 1)}) {
                const auto a = shaped_words<wtype>(shape, L, this->random);
                for (upL_t tds : ALL_TDS) {
                    auto t = a;
                    const auto out = bp_add_scalar<wtype>(c, t.data(), L, pool_context(tds));
                    ASSERT_EQ(to_mpz(t.data(), L) + mpz_class(long(out)) * this->power(L),
                              to_mpz(a.data(), L) + mpz_class(long(c)))
                        << "L " << L << " c " << c << " tds " << tds;
                }
            }
}

TYPED_TEST(Carries, ClassifyingRippleTellsClassAndCarry) {
    using wtype = TypeParam;
    constexpr wtype ones = static_cast<wtype>(~wtype(0));
    EXPECT_THROW(bp_ksr_carry<wtype>(1, nullptr, 0), InvalidParametersException);
    for (upL_t L : {1, 2, 4, 5, 6, 100, 8192, 50000}) {
        std::vector<std::vector<wtype>> arrays;
        for (Shape shape : ALL_SHAPES) arrays.push_back(shaped_words<wtype>(shape, L, this->random));
        // One step away from all zeros and all ones, at either end.
        for (wtype fill : {wtype(0), ones})
            for (upL_t place : {upL_t(0), L - 1})
                for (wtype word : {wtype(1), wtype(ones - 1), wtype(~fill)}) {
                    arrays.emplace_back(L, fill);
                    arrays.back()[place] = word;
                }
        for (const auto& a : arrays)
            for (int c : {0, 1, -1})
                for (upL_t tds : ALL_TDS) {
                    auto t = a, expected = a;
                    const auto carry = bp_add_scalar<wtype>(c, expected.data(), L);
                    unsigned kind = 128;
                    if (expected == std::vector<wtype>(L, 0)) kind = 0;
                    if (expected == std::vector<wtype>(L, ones)) kind = 255;
                    const unsigned result = bp_ksr_carry<wtype>(c, t.data(), L, pool_context(tds));
                    ASSERT_EQ(result, (static_cast<unsigned>(carry) & 255) << 8 | kind)
                        << "L " << L << " c " << c;
                    ASSERT_EQ(t, expected);
                }
    }
}

}  // namespace
}  // namespace lumo
