#include "death_output.h"
#include "failures.h"
#include "held_numbers.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/basic_int.h"
#include "lumo/numbers/objects/big_int.h"
#include "scratch.h"

namespace lumo {
namespace {

using namespace lumo::testing;

template <typename wtype>
class BasicIntTest : public WordTest<wtype> {
 public:
    BasicIntO<wtype> any(upL_t longest) {
        auto& r = this->random;
        auto words = shaped_words<wtype>(ALL_SHAPES[r() % 5], 1 + r() % longest, r);
        words[0] |= 1;
        return BasicIntO<wtype>(words.data(), words.size());
    }
};
TYPED_TEST_SUITE(BasicIntTest, WordTypes);

TYPED_TEST(BasicIntTest, ArithmeticCarriesItsHash) {
    using wtype = TypeParam;
    const std::string negative = " A negative value was encountered.", zero = " Zero was encountered.";
    for (int round = 0; round < 2000; round++) {
        auto A = this->any(12), B = this->any(12);
        if (round % 7 == 0) B = BasicIntO<wtype>(static_cast<const BasicInt<wtype>&>(A));
        const mpz_class a = to_mpz(A.T, A.L), b = to_mpz(B.T, B.L);
        std::vector<wtype> words(30);
        BasicInt<wtype> T(words.data(), 30);
        auto check = [&](const BasicInt<wtype>& x, const mpz_class& expected) {
            ASSERT_EQ(to_mpz(x.T, x.L), expected) << round;
            ASSERT_EQ(x.hash_error(), 0u) << round;
            ASSERT_NE(x.T[x.L - 1], 0u);
        };
        T.set_add(A, B);
        check(T, a + b);
        T.set_mulB(A, B);
        check(T, a * b);
        T.set_sqrB(A);
        check(T, a * a);
        ASSERT_EQ(T.to_string(), mpz_class(a * a).get_str());
        BasicIntO<wtype> sum(static_cast<const BasicInt<wtype>&>(A));
        if (A.L >= B.L) {
            sum += B;
            check(sum, a + b);
            sum -= B;
            check(sum, a);
        }
        if (a > b) {
            T.set_sub(A, B);
            check(T, a - b);
            sum -= B;
            check(sum, a - b);
        } else {
            const std::string& why = a < b ? negative : zero;
            ASSERT_EQ(refusal([&] { T.set_sub(A, B); }), "BasicInt::set_sub()" + why);
            ASSERT_EQ(refusal([&] { sum -= B; }), "BasicInt::operator-=()" + why);
        }
        A.T[0] ^= 2;
        ASSERT_NE(A.hash_error(), 0u);
    }
}

TYPED_TEST(BasicIntTest, OwnedValues) {
    using wtype = TypeParam;
    const wtype zeros[3] = {};
    EXPECT_THROW(BasicIntO<wtype>(0), UnsupportedZeroException);
    EXPECT_THROW(BasicIntO<wtype>(zeros, 3), UnsupportedZeroException);
    EXPECT_THROW(BasicIntO<wtype>(BasicInt<wtype>()), UnsupportedZeroException);
    BasicIntO<wtype> big(0xfedcba9876543210u);
    EXPECT_EQ(big.L, 8 / sizeof(wtype));
    EXPECT_EQ(big.hash_error(), 0u);
    EXPECT_EQ(big.to_string(), "18364758544493064720");
    const BasicIntO<wtype> moved(std::move(big));
    EXPECT_EQ(big.T, nullptr);
    EXPECT_EQ(moved.room_above(1).capacity, 3u);
    BasicInt<wtype> small = moved.room_above(3);
    EXPECT_THROW(small.set_add(moved, moved), BufferTooSmallException);
    EXPECT_THROW(small.set_mulB(moved, moved), BufferTooSmallException);
}

template <typename wtype>
class BigIntTest : public WordTest<wtype> {
 public:
    BigIntO<wtype> any(upL_t longest) {
        auto& r = this->random;
        const HeldFloat<wtype> words(shaped_words<wtype>(ALL_SHAPES[r() % 5], r() % (longest + 1), r), 0,
                                     r() % 2);
        BigIntO<wtype> x(longest + 40);
        x.set_BigFloat(words);
        return x;
    }
};
TYPED_TEST_SUITE(BigIntTest, WordTypes);

TYPED_TEST(BigIntTest, ArithmeticOverAllShapes) {
    using wtype = TypeParam;
    Multiply::ensure_tables(1 << 16);
    const Scratch scratch(Multiply::max_buffer_size<wtype>(600, 1));
    for (int round = 0; round < 1500; round++) {
        const upL_t longest = round % 10 ? 22 : 280;
        auto A = this->any(longest), B = this->any(longest);
        const mpz_class a = mantissa(A), b = mantissa(B);
        BigIntO<wtype> T(2 * longest + 2);
        auto check = [&](const BigInt<wtype>& x, const mpz_class& expected) {
            ASSERT_EQ(mantissa(x), expected) << round;
            x.check_normalization();
        };
        T.set_add(A, B);
        check(T, a + b);
        T.set_sub(A, B);
        check(T, a - b);
        T.set_mul(scratch.context(), A, B);
        check(T, a * b);
        T.set_sqr(scratch.context(), A);
        check(T, a * a);
        const auto m = static_cast<wtype>(this->random() >> this->random() % 64);
        T.set_mul_uW(A, m);
        check(T, a * to_mpz(&m, 1));
        T.set_BigInt(A);
        T.mul_uW(m);
        check(T, a * to_mpz(&m, 1));
        ASSERT_EQ((BigInt<wtype>::cmp(A, B)), sgn(mpz_class(a - b)));
        ASSERT_EQ(A.bit_length(), a == 0 ? 0 : mpz_sizeinbase(a.get_mpz_t(), 2));

        const upL_t bits = this->random() % 700;
        A >>= bits;
        mpz_class shifted;
        mpz_tdiv_q_2exp(shifted.get_mpz_t(), a.get_mpz_t(), bits);
        check(A, shifted);
        A <<= bits;
        check(A, shifted << bits);
        A.set_sub(A, B);  // in place
        check(A, (shifted << bits) - b);
        A.set_add(B, A);
        check(A, shifted << bits);
        if (A.L == 0) continue;
        const upL_t position = this->random() % (A.L + 1);
        const mpz_class before = abs(mantissa(A));
        A.add_ip(static_cast<wtype>(-1), position);
        ASSERT_EQ(abs(mantissa(A)), before + (unit<wtype>(1) - 1) * unit<wtype>(spL_t(position)));
    }
}

TYPED_TEST(BigIntTest, LimitsAndConversions) {
    using wtype = TypeParam;
    BigIntO<wtype> A(1), zero(1);
    A.set_word(9);
    EXPECT_DEATH(dying([&] { A.add_ip(1, 2); }), "BigInt::add_ip\\(\\): Magnitude is out of range.");
    EXPECT_DEATH(dying([&] { zero.add_ip(1, 0); }), "BigInt::add_ip\\(\\): Magnitude is out of range.");
    EXPECT_THROW(A <<= 10000, BufferTooSmallException);
    A.set_BigFloat(HeldFloat<wtype>({1, 2, 3}, -1, false));
    EXPECT_EQ(mantissa(A), -(2 + 3 * unit<wtype>(1)));
    A.set_BigFloat(HeldFloat<wtype>({1, 2, 3}, -3, false));
    EXPECT_TRUE(A.is_zero() && A.positive);
    A.set_BigFloat(HeldFloat<wtype>({1}, 0, false));
    A >>= 1;
    EXPECT_TRUE(A.is_zero() && A.positive);
    const BasicIntO<wtype> n(77);
    A.set_BasicInt(n);
    EXPECT_EQ(mantissa(A), 77);
}

}  // namespace
}  // namespace lumo
