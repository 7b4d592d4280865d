#include "lumo/numbers/objects/exact_float.h"

#include "failures.h"
#include "held_numbers.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/basic_int.h"
#include "scratch.h"

namespace lumo {
namespace {

using namespace lumo::testing;

template <typename wtype>
using Exact = Held<ExactFloat, wtype>;

template <typename wtype>
Exact<wtype> hashed(const std::vector<wtype>& words, spL_t exp, bool positive = true, upL_t below = 0,
                    upL_t above = 0) {
    Exact<wtype> x(words, exp, positive, below, above);
    x.update_hash();
    return x;
}

template <typename wtype>
class ExactFloatTest : public WordTest<wtype> {
 public:
    Exact<wtype> any(upL_t longest) {
        auto& r = this->random;
        return hashed(shaped_words<wtype>(ALL_SHAPES[r() % 5], r() % (longest + 1), r), spL_t(r() % 41) - 20,
                      r() % 2 == 0);
    }
    static Exact<wtype> copy(const ExactFloat<wtype>& A, upL_t below, upL_t above) {
        Exact<wtype> x(std::vector<wtype>(A.T, A.T + A.L), A.exp, A.positive, below, above);
        x.hash = A.hash;
        return x;
    }
};
TYPED_TEST_SUITE(ExactFloatTest, WordTypes);

constexpr spL_t LOW = -300;

/// Right value, right form, and a hash that agrees with the words though it was made without them.
template <typename Float>
::testing::AssertionResult exact(const Float& T, const mpz_class& expected) {
    if (value_over(T, LOW) != expected) return ::testing::AssertionFailure() << "wrong value";
    if (T.hash_error() != 0) return ::testing::AssertionFailure() << "wrong hash";
    if (T.L != 0 && T.T[T.L - 1] == 0) return ::testing::AssertionFailure() << "top word is zero";
    if (T.L == 0 && (T.exp != 0 || !T.positive)) return ::testing::AssertionFailure() << "not the plain zero";
    if (!T.intact()) return ::testing::AssertionFailure() << "wrote behind the buffer";
    return ::testing::AssertionSuccess();
}

TYPED_TEST(ExactFloatTest, SumsInPlaceForEveryOverlapAndGap) {
    for (int round = 0; round < 4000; round++) {
        const auto A = this->any(round % 2 ? 5 : 30), B = this->any(round % 3 ? 5 : 30);
        const mpz_class a = value_over(A, LOW), b = value_over(B, LOW);
        auto T = this->copy(A, 80, 80), U = this->copy(A, 80, 80), V = this->copy(A, 0, 1);
        const spL_t lowest = T.Tmin();
        T.add(B);
        ASSERT_TRUE(exact(T, a + b)) << round;
        // The words of A stay where they are in the buffer.
        ASSERT_TRUE(A.L == 0 || T.is_zero() || T.Tmin() == lowest);
        U.sub(B);
        ASSERT_TRUE(exact(U, a - b)) << round;
        U.add(B);
        ASSERT_TRUE(exact(U, a)) << round;
        U.sub(U);
        ASSERT_TRUE(exact(U, 0));
        V.add(V);
        ASSERT_TRUE(exact(V, 2 * a));
    }
    // Cancellation and carries that reach both ends.
    const auto ones = hashed(std::vector<TypeParam>(6, this->ONES), 0);
    for (spL_t exp = -8; exp <= 8; exp++)
        for (bool positive : {true, false}) {
            const auto one = hashed<TypeParam>({1}, exp, positive);
            const mpz_class sum = value_over(ones, LOW) + value_over(one, LOW);
            auto T = this->copy(ones, 9, 10), U = this->copy(one, 20, 20);
            T.add(one);
            EXPECT_TRUE(exact(T, sum)) << exp;
            U.add(ones);
            EXPECT_TRUE(exact(U, sum)) << exp;
        }
}

TYPED_TEST(ExactFloatTest, BufferLimitsOfSumsInPlace) {
    using wtype = TypeParam;
    const auto add = [&](spL_t exp, bool positive, upL_t length, upL_t above) {
        auto A = hashed<wtype>({3, 3, 3}, 0, true, 1, above);
        return refusal([&] { A.add(hashed(std::vector<wtype>(length, 3), exp, positive)); });
    };
    EXPECT_EQ(add(-1, true, 3, 0), "ExactFloat::uaddAB_ip() Amag >= Tmax");
    EXPECT_EQ(add(1, true, 3, 0), "ExactFloat::uaddBA_ip() Bmag >= Tmax");
    EXPECT_EQ(add(-1, false, 3, 0), "");
    EXPECT_EQ(add(-2, false, 3, 0), "ExactFloat::usubAB_ip() Bexp < Tmin");
    EXPECT_EQ(add(1, false, 3, 0), "ExactFloat::usubBA_ip() Bmag > Tmax");
    EXPECT_EQ(add(-2, true, 3, 1), "ExactFloat::uaddAB_ip() Bexp < Tmin");
    EXPECT_EQ(add(-3, true, 8, 7), "ExactFloat::uaddBA_ip() Bexp < Tmin");
    EXPECT_EQ(add(-3, false, 8, 7), "ExactFloat::usubBA_ip() Bexp < Tmin");
}

TYPED_TEST(ExactFloatTest, SumsOutOfPlace) {
    using wtype = TypeParam;
    int differences = 0;
    for (int round = 0; round < 2000; round++) {
        const auto A = this->any(20), B = round % 9 ? this->any(20) : this->copy(A, 0, 0);
        const mpz_class a = value_over(A, LOW), b = value_over(B, LOW);
        Exact<wtype> T(90);
        if (A.L && B.L && A.positive != B.positive) {
            EXPECT_EQ(refusal([&] { T.set_add(A, B); }), "ExactFloat::set_add() Not implemented yet.");
            EXPECT_THROW(T.set_sub(A, B), UnsupportedNegativeException);
            continue;
        }
        T.set_add(A, B);
        ASSERT_TRUE(exact(T, a + b)) << round;
        if (a == b) {
            ASSERT_THROW(T.set_sub(A, B), UnsupportedZeroException);
        } else if (abs(a) < abs(b)) {
            ASSERT_THROW(T.set_sub(A, B), UnsupportedNegativeException);
        } else {
            T.set_sub(A, B);
            ASSERT_TRUE(exact(T, a - b)) << round;
            differences++;
        }
    }
    EXPECT_GT(differences, 300);
}

TYPED_TEST(ExactFloatTest, Products) {
    using wtype = TypeParam;
    Multiply::ensure_tables(1 << 18);
    const Scratch scratch(Multiply::max_buffer_size<wtype>(2000, 1));
    const MultiplyContext ctx = scratch.context();
    for (int round = 0; round < 600; round++) {
        const upL_t longest = round % 20 ? 25 : 900;
        const auto A = this->any(longest), B = this->any(longest);
        const mpz_class a = value_over(A, LOW / 2), b = value_over(B, LOW / 2);
        Exact<wtype> T(A.L + B.L), S(2 * A.L);
        T.set_mul(ctx, A, B);
        ASSERT_TRUE(exact(T, a * b)) << A.L << " " << B.L;
        S.set_sqr(ctx, A);
        ASSERT_TRUE(exact(S, a * a));
        const spL_t bottom = A.exp + B.exp, emin = bottom + spL_t(this->random() % 30) - 20;
        Exact<wtype> E(A.L + B.L + upL_t(std::max<spL_t>(bottom - emin, 0)));
        E.set_mul_extend(ctx, A, B, emin);
        ASSERT_TRUE(exact(E, a * b));
        ASSERT_TRUE(E.is_zero() || E.exp == std::min(emin, bottom));
        // A fault stays visible in what is made from a number.
        if (A.L == 0 || B.L == 0) continue;
        auto sum = this->copy(B, 950, 950);
        A.T[this->random() % A.L] ^= wtype(1) << this->random() % this->W;
        ASSERT_NE(A.hash_error(), 0u);
        sum.add(A);
        ASSERT_NE(sum.hash_error(), 0u);
        T.set_mul(ctx, A, B);
        ASSERT_EQ(T.hash_error() != 0, !Hash61::is_zero(B.hash) || T.is_zero());
        // Nor does it go with the words, where it leaves none.
        Exact<wtype> none(1), total(B.L);
        none.hash = 5;
        T.set_mul(ctx, none, B);
        ASSERT_EQ(T.hash_error() != 0, !Hash61::is_zero(B.hash));
        total.set_add(B, none);
        ASSERT_NE(total.hash_error(), 0u);
        total.add(none);
        ASSERT_EQ(Hash61::canonical(total.hash_error()), 10u);
        none.add(none);
        ASSERT_EQ(none.hash_error(), 10u);
    }
    const auto one = hashed<wtype>({1}, 0);
    Exact<wtype> T(1);
    EXPECT_THROW(T.set_mul(ctx, one, one), BufferTooSmallException);
    EXPECT_THROW(T.set_sqr(ctx, one), BufferTooSmallException);
}

TYPED_TEST(ExactFloatTest, WordsAndBits) {
    using wtype = TypeParam;
    for (int round = 0; round < 1000; round++) {
        const auto A = this->any(20);
        const mpz_class a = value_over(A, LOW);
        const auto m = static_cast<wtype>(this->random() >> this->random() % 64);
        const auto c = static_cast<wtype>(this->random());
        const mpz_class added = to_mpz(&c, 1) * unit<wtype>(A.exp - LOW) * (A.positive ? 1 : -1);
        const mpz_class expected = m == 0 ? mpz_class(0) : mpz_class(a * to_mpz(&m, 1) + added);
        auto T = this->copy(A, 0, 1), N = this->copy(A, 0, 0), S = this->copy(A, 0, 1);
        T.muladd_uW(m, c);
        ASSERT_TRUE(exact(T, expected));
        Exact<wtype> U(A.L + 1);
        U.set_muladd_uW(A, m, c);
        ASSERT_TRUE(exact(U, expected));

        const spL_t bits = spL_t(this->random() % 401) - 200;
        const mpz_class shifted = bits < 0 ? mpz_class(a >> -bits) : mpz_class(a << bits);
        S.mp2(bits);
        ASSERT_TRUE(exact(S, shifted));
        S = this->copy(A, 0, 1);
        S.mp2_noupdate(bits);
        ASSERT_EQ(value_over(S, LOW), shifted);
        ASSERT_EQ(S.hash, A.hash);
        N.negate();
        ASSERT_TRUE(exact(N, -a));
        ASSERT_TRUE(Hash61::is_zero(Hash61::add(N.hash, A.hash)));
    }
    auto full = hashed<wtype>({1}, 0);
    EXPECT_THROW(full.mp2(1), BufferTooSmallException);
    EXPECT_THROW(full.muladd_uW(1, 1), BufferTooSmallException);
}

TYPED_TEST(ExactFloatTest, StripsAndCopies) {
    using wtype = TypeParam;
    constexpr upL_t unit_words = WordTraits<wtype>::align_words;
    std::vector<wtype> words(unit_words + 7, 0);
    words.back() = 5;
    auto A = hashed(words, -3, false);
    const mpz_class a = value_over(A, LOW);
    A.strip_lzs_aligned();
    EXPECT_EQ(A.T - A.base, spL_t(unit_words));
    EXPECT_TRUE(exact(A, a));
    A.strip_lzs();
    EXPECT_EQ(A.L, 1u);
    EXPECT_TRUE(exact(A, a));
    EXPECT_TRUE(A.Tmin() == -3 && A.Tmax() == spL_t(unit_words) + 4);
    EXPECT_TRUE(A.word_at(A.exp) == 5 && A.word_at(A.exp + 1) == 0);

    const BasicIntO<wtype> n(12345);
    for (int sign : {1, -1}) {
        Exact<wtype> T(3);
        T.set_BasicInt(n, sign > 0);
        EXPECT_TRUE(exact(T, sign * 12345 * unit<wtype>(-LOW)));
    }
    Exact<wtype> zero(0), T(2);
    EXPECT_THROW(zero.set_ExactFloat(A), BufferTooSmallException);
    T.sub(A);  // from zero: the other number, negated
    EXPECT_TRUE(exact(T, -a));

    ExactFloatO<wtype> owned(100);
    owned.set_ExactFloat(A);
    const ExactFloatO<wtype> moved(std::move(owned));
    EXPECT_EQ(value_over(moved, LOW), a);
    EXPECT_EQ(moved.hash_error(), 0u);
}

}  // namespace
}  // namespace lumo
