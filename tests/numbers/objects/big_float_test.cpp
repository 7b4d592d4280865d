#include "lumo/numbers/objects/big_float.h"

#include <gtest/gtest.h>

#include <cmath>

#include "death_output.h"
#include "lumo/numbers/objects/big_int.h"
#include "numbers.h"

namespace lumo {
namespace {

using namespace lumo::testing;

template <typename wtype>
class BigFloatTest : public ::testing::Test {
 public:
    using Float = Held<BigFloat, wtype>;
    static constexpr wtype ONES = static_cast<wtype>(-1);
    static constexpr unsigned W = WordTraits<wtype>::bits;

    /// Up to `longest` words of any shape, bottom within 40 words of zero.
    Float any(upL_t longest) {
        const Shape shape = ALL_SHAPES[random() % 5];
        return {shaped_words<wtype>(shape, random() % (longest + 1), random), spL_t(random() % 81) - 40,
                random() % 2 == 0, random() % 3, 3};
    }
    std::mt19937_64 random{20240607};
};
TYPED_TEST_SUITE(BigFloatTest, WordTypes);

constexpr spL_t LOW = -1000;

TYPED_TEST(BigFloatTest, SumsAreExactOrCutToTheirPrecision) {
    using wtype = TypeParam;
    for (int round = 0; round < 3000; round++) {
        auto A = this->any(40);
        // Now and then the same words, or all but the lowest, so that they cancel.
        Held<BigFloat, wtype> B = round % 7 ? this->any(40)
                                            : Held<BigFloat, wtype>(std::vector<wtype>(A.T, A.T + A.L), A.exp,
                                                                    round % 3 == 0, 0, 0);
        if (B.L > 1 && round % 2) B.T[0] ^= 1;
        const upL_t p = 1 + this->random() % 60;
        for (bool subtract : {false, true}) {
            Held<BigFloat, wtype> T(200);
            if (subtract)
                T.set_sub(p, {}, A, B);
            else
                T.set_add(p, {}, A, B);
            const mpz_class b = subtract ? mpz_class(-value_over(B, LOW)) : value_over(B, LOW);
            const mpz_class exact = value_over(A, LOW) + b;
            const mpz_class error = abs(value_over(T, LOW) - exact);
            ASSERT_NO_THROW(T.check_normalization());
            ASSERT_LE(T.L, p + 2);
            if (A.L == 0 || B.L == 0) {
                const BigFloat<wtype>& only = A.L == 0 ? B : A;
                ASSERT_EQ(abs(value_over(T, LOW)), abs(value_over(only.cut(p + 2), LOW)));
                continue;
            }
            const spL_t lowest = std::max(A.top(), B.top()) - static_cast<spL_t>(p) - 1;
            // Cut, each operand loses less than one unit of the lowest word.
            const bool whole = lowest <= std::min(A.exp, B.exp);
            const mpz_class bound = whole ? mpz_class(1) : mpz_class(unit<wtype>(lowest - LOW) * 2);
            ASSERT_LT(error, bound) << round;
        }
    }
}

TYPED_TEST(BigFloatTest, SumsDoNotDependOnThreads) {
    using wtype = TypeParam;
    Held<BigFloat, wtype> A(shaped_words<wtype>(Shape::ones, 40000, this->random), -7, true, 0, 1);
    Held<BigFloat, wtype> B(shaped_words<wtype>(Shape::runs, 40000, this->random), -20011, true, 0, 1);
    if (B.L == 0) GTEST_SKIP();
    Held<BigFloat, wtype> one(70000), many(70000);
    const ParallelContext pieces{7, &serial_parallelizer()};
    one.set_add(65000, {}, A, B);
    many.set_add(65000, pieces, A, B);
    EXPECT_EQ(value_over(one, -20011), value_over(many, -20011));
    EXPECT_EQ(value_over(one, -20011), value_over(A, -20011) + value_over(B, -20011));
    one.set_sub(65000, {}, A, B);
    many.set_sub(65000, pieces, A, B);
    EXPECT_EQ(value_over(one, -20011), value_over(many, -20011));
    EXPECT_EQ(value_over(one, -20011), value_over(A, -20011) - value_over(B, -20011));
}

TYPED_TEST(BigFloatTest, SumKnowsItsRoomAndItsNeed) {
    using wtype = TypeParam;
    Held<BigFloat, wtype> A({5, 7}, 0, true, 0, 0), B({1}, -100, true, 0, 0);
    Held<BigFloat, wtype> T(5), small(4), zero(1);
    T.set_uadd(3, {}, A, B);  // B lies wholly below the last word
    EXPECT_EQ(value_over(T, LOW), value_over(A, LOW));
    EXPECT_THROW(small.set_uadd(3, {}, A, B), BufferTooSmallException);
    T.set_usub(3, {}, A, A);
    EXPECT_TRUE(T.is_zero() && T.positive && T.exp == 0);
    T.set_sub(3, {}, zero, A);
    EXPECT_EQ(value_over(T, 0), -value_over(A, 0));
    EXPECT_DEATH(dying([&] { T.set_usub(3, {}, B, A); }), "BigFloat::set_usub");
}

TYPED_TEST(BigFloatTest, FixedRangeDifferenceWraps) {
    using wtype = TypeParam;
    for (int round = 0; round < 500; round++) {
        auto A = this->any(30), B = this->any(30);
        const upL_t L = this->random() % 40;
        const spL_t top = spL_t(this->random() % 100) - 50;
        Held<BigFloat, wtype> T(L + 1);
        T.set_rsub(L, {}, A, B, top, round % 2 == 0);
        const spL_t low = top - spL_t(L) - 1;
        auto window = [&](const BigFloat<wtype>& x) {
            std::vector<wtype> words(L + 1);
            x.read_window(words.data(), low, L + 1);
            return to_mpz(words.data(), words.size());
        };
        mpz_class expected = window(A) - window(B);
        mpz_fdiv_r_2exp(expected.get_mpz_t(), expected.get_mpz_t(), (L + 1) * this->W);
        ASSERT_EQ(abs(value_over(T, low)), expected);
        ASSERT_TRUE(T.intact());
        ASSERT_TRUE(T.is_zero() || T.positive == (round % 2 == 0));
    }
}

TYPED_TEST(BigFloatTest, ComparesByValue) {
    using wtype = TypeParam;
    for (int round = 0; round < 2000; round++) {
        auto A = this->any(10), B = this->any(10);
        if (round % 2) {  // equal up to low words
            const std::vector<wtype> low = shaped_words<wtype>(ALL_SHAPES[round % 5], 3, this->random);
            std::vector<wtype> words(low);
            words.insert(words.end(), A.T, A.T + A.L);
            Held<BigFloat, wtype> C(words, A.exp - 3, B.positive, 0, 0);
            ASSERT_EQ((BigFloat<wtype>::ucmp(A, C)), cmp(abs(value_over(A, LOW)), abs(value_over(C, LOW))));
            continue;
        }
        const int expected = cmp(value_over(A, LOW), value_over(B, LOW));
        ASSERT_EQ((BigFloat<wtype>::cmp(A, B)), (expected > 0) - (expected < 0));
    }
}

TYPED_TEST(BigFloatTest, ProductsAtEverySmallShape) {
    using wtype = TypeParam;
    Multiply::ensure_tables(1 << 16);
    const Scratch scratch(Multiply::max_buffer_size<wtype>(700, 1));
    for (int round = 0; round < 1500; round++) {
        const upL_t longest = round % 10 ? 25 : 300;
        auto A = this->any(longest), B = this->any(longest);
        const upL_t p = round % 3 ? 600 : 1 + this->random() % 60;
        const bool square = round % 4 == 0, small = round % 5 == 0;
        const BigFloat<wtype>& b = square ? A : B;
        Held<BigFloat, wtype> T(std::min(p + 2, A.L + b.L));
        if (small)
            T.set_mul_small(p, scratch.context, A, b);
        else if (square)
            T.set_sqr(p, scratch.context, A);
        else
            T.set_mul(p, scratch.context, A, b);
        const mpz_class exact = value_over(A, LOW / 2) * value_over(b, LOW / 2);
        const mpz_class error = abs(value_over(T, LOW) - exact);
        ASSERT_NO_THROW(T.check_normalization());
        ASSERT_TRUE(T.intact());
        // The cuts cost less than one unit each, the low columns left out a few units.
        const spL_t lowest = A.top() + b.top() - static_cast<spL_t>(p + 2);
        const bool whole = A.L + b.L <= p + 2;
        const mpz_class bound = whole ? mpz_class(1) : mpz_class(unit<wtype>(lowest - LOW) * (4 + 2 * p));
        ASSERT_LT(error, bound) << A.L << " " << b.L << " " << p;
    }
    Held<BigFloat, wtype> A({3, 5}, 0, true, 0, 0), T(3);
    EXPECT_THROW(T.set_mul(9, scratch.context, A, A), BufferTooSmallException);
    EXPECT_THROW(T.set_sqr(9, scratch.context, A), BufferTooSmallException);
    const spL_t far = spL_t(1) << 62;
    Held<BigFloat, wtype> huge({3}, far, true, 0, 0), tiny({3}, -far - 9, true, 0, 0), U(4);
    EXPECT_THROW(U.set_sqr(9, scratch.context, huge), ExponentOverflowException);
    EXPECT_THROW(U.set_mul(9, scratch.context, tiny, tiny), ExponentOverflowException);
}

TYPED_TEST(BigFloatTest, WordFactorsAndDivisors) {
    using wtype = TypeParam;
    using signed_word = typename WordTraits<wtype>::signed_word;
    for (int round = 0; round < 1000; round++) {
        auto A = this->any(30);
        const upL_t p = 1 + this->random() % 40;
        const auto a = A.cut(p + 1);
        const auto m = static_cast<wtype>(this->random() >> this->random() % 64);
        Held<BigFloat, wtype> T(p + 3);
        T.set_mul_uW(p, A, m);
        ASSERT_EQ(value_over(T, LOW), value_over(a, LOW) * mpz_class(static_cast<unsigned long>(m)));
        const auto s = static_cast<spL_t>(this->random()) >> this->random() % 64;
        T.set_mul_sL(p, A, s);
        ASSERT_EQ(value_over(T, LOW), value_over(a, LOW) * mpz_class(static_cast<long>(s)));

        auto d = static_cast<signed_word>(this->random() >> this->random() % (this->W - 2)) / 2;
        const auto magnitude = static_cast<wtype>(d < 0 ? -d : d);
        if ((magnitude & (magnitude - 1)) == 0) continue;
        T.set_div_sW(p, {}, A, d);
        ASSERT_NO_THROW(T.check_normalization());
        const auto b = A.cut(p + 2);
        // b = d T + remainder, |remainder| < |d| units of the lowest word of T.
        const spL_t unit_exp = A.top() - spL_t(p + 2);
        const mpz_class rest = value_over(b, LOW) - value_over(T, LOW) * mpz_class(static_cast<long>(d));
        ASSERT_LT(abs(rest), abs(mpz_class(static_cast<long>(d))) * unit<wtype>(unit_exp - LOW));
        ASSERT_TRUE(T.is_zero() || T.L >= p + 1);
    }
    auto A = this->any(5);
    Held<BigFloat, wtype> T(20);
    EXPECT_THROW(T.set_div_sW(5, {}, A, 0), ArithmeticException);
    EXPECT_THROW(T.set_div_sW(5, {}, A, -1), InvalidParametersException);
    T.set_div_sW(5, {}, A, 1);
    EXPECT_EQ(value_over(T, LOW), value_over(A, LOW));
}

TYPED_TEST(BigFloatTest, ShiftsByBits) {
    using wtype = TypeParam;
    for (spL_t bits = -3 * 64; bits <= 3 * 64; bits += 7) {
        Held<BigFloat, wtype> A(shaped_words<wtype>(Shape::ones, 3, this->random), 5, false, 1, 1);
        const mpz_class before = value_over(A, -20);
        A.mp2(bits);
        EXPECT_EQ(value_over(A, -20) << (bits < 0 ? -bits : 0), before << (bits > 0 ? bits : 0));
    }
    Held<BigFloat, wtype> full({1, 1}, 0, true, 0, 0);
    EXPECT_THROW(full.mul_uW(3), BufferTooSmallException);
    full.mul_uW(1);
    full.mul_uW(0);
    EXPECT_TRUE(full.is_zero());
}

TYPED_TEST(BigFloatTest, DoublesComeAndGo) {
    using wtype = TypeParam;
    const double values[] = {1,
                             -1.5,
                             0x1p52,
                             0x1p53,
                             1e300,
                             -1e-300,
                             0x1p-1074,
                             0x1.fffffffffffffp-1023,
                             0x1.fffffffffffffp1023,
                             3.141592653589793,
                             0x1p-32,
                             0x1p32,
                             0x1p64,
                             0x1p-64};
    for (double x : values)
        for (spL_t e : {-9, 0, 4}) {
            Held<BigFloat, wtype> T(3);
            T.set_double(x, e);
            T.check_normalization();
            int exponent;
            const mpz_class digits(std::ldexp(std::frexp(x, &exponent), 53));
            constexpr int SHIFT = 64 * 40;
            const mpz_class expected = digits << (SHIFT + exponent - 53);
            EXPECT_EQ(value_over(T, e - SHIFT / static_cast<int>(this->W)), expected) << x;
            spL_t top;
            const double back = T.get_double(top);
            EXPECT_EQ(std::ldexp(back, static_cast<int>((top - e) * spL_t(this->W))), x);
        }
    Held<BigFloat, wtype> zero(3);
    zero.set_double(-0.0, 5);
    spL_t top = 9;
    EXPECT_TRUE(zero.is_zero());
    EXPECT_EQ(zero.get_double(top), 0.0);
}

TYPED_TEST(BigFloatTest, NegatesAWrappedValue) {
    using wtype = TypeParam;
    for (int round = 0; round < 1000; round++) {
        // -x modulo 2^(W n) for a short x of any shape.
        const upL_t n = 12;
        auto x = shaped_words<wtype>(ALL_SHAPES[round % 5], this->random() % 10, this->random);
        const mpz_class magnitude = to_mpz(x.data(), x.size());
        if (magnitude == 0) continue;
        const mpz_class wrapped = unit<wtype>(n) - magnitude;
        std::vector<wtype> words(n);
        mpz_export(words.data(), nullptr, -1, sizeof(wtype), 0, 0, wrapped.get_mpz_t());
        Held<BigFloat, wtype> A(words, -3, true, 0, 0), B(words, -3, true, 0, 0);
        A.two_complement();
        ASSERT_EQ(value_over(A, -3), magnitude);
        A.check_normalization();
        B.normalize_ones();
        B.check_normalization();
        mpz_class rest = value_over(B, -3) - wrapped;  // all ones, as far as they go
        ASSERT_EQ(rest % unit<wtype>(B.top() + 3), 0);
    }
    const wtype ones = this->ONES;
    Held<BigFloat, wtype> A({0, 5, 0, ones, ones}, 0, true, 0, 0), B({ones, ones}, 0, true, 0, 0);
    A.normalize_ones();
    EXPECT_TRUE(A.L == 1 && A.exp == 1 && A.T[0] == 5);
    B.normalize_ones();
    EXPECT_EQ(B.L, 1u);
}

TYPED_TEST(BigFloatTest, TrimsBothEnds) {
    using wtype = TypeParam;
    constexpr upL_t unit_words = WordTraits<wtype>::align_words;
    std::vector<wtype> words(3 * unit_words + 5, 0);
    words[2 * unit_words + 1] = 7, words.back() = 9;
    Held<BigFloat, wtype> A(words, -2, true, 0, 0);
    const mpz_class value = value_over(A, -2);
    A.strip_lzs_aligned();
    EXPECT_EQ(A.L, unit_words + 5);
    EXPECT_EQ(value_over(A, -2), value);
    A.strip_lzs();
    EXPECT_EQ(A.L, unit_words + 4);
    EXPECT_EQ(value_over(A, -2), value);

    A.truncate(4);
    EXPECT_EQ(A.L, 6u);
    EXPECT_EQ(A.T[5], 9u);
    A.truncate_above(A.top() - 1);
    EXPECT_TRUE(A.is_zero());
    Held<BigFloat, wtype> B({4, 5, 0, 6}, 10, true, 0, 0);
    B.truncate_above(14);
    EXPECT_EQ(B.L, 4u);
    B.truncate_above(13);
    EXPECT_EQ(B.L, 2u);
    B.truncate_above(10);
    EXPECT_TRUE(B.is_zero());
}

TYPED_TEST(BigFloatTest, WordsAddedInPlaceRipple) {
    using wtype = TypeParam;
    const wtype ones = this->ONES;
    Held<BigFloat, wtype> A({ones, ones, ones}, -1, true, 0, 1);
    A.add_ip(ones, 0);
    EXPECT_EQ(A.L, 4u);
    EXPECT_EQ(value_over(A, -1), unit<wtype>(3) - 1 + unit<wtype>(1) * mpz_class((unsigned long)ones));
    EXPECT_DEATH(dying([&] { A.add_ip(1, 4); }), "BigFloat::add_ip\\(\\): Magnitude is out of range.");
    EXPECT_THROW(A.add_ip(1, 3), BufferTooSmallException);

    Held<BigFloat, wtype> B({5, ones, ones}, 2, true, 0, 1), C({5, ones, 6}, 2, true, 0, 0),
        D({ones}, 0, true, 0, 0);
    B.purturb_up(3);
    EXPECT_EQ(B.L, 3u);
    B.purturb_up(1);
    EXPECT_EQ(B.L, 3u);  // one word more at the top, one less at the bottom
    EXPECT_EQ(value_over(B, 2), unit<wtype>(3));
    C.purturb_up(1);
    EXPECT_EQ(value_over(C, 2), 5 + unit<wtype>(2) * 7);
    EXPECT_THROW(D.purturb_up(0), BufferTooSmallException);
}

TYPED_TEST(BigFloatTest, WindowsAndCopies) {
    using wtype = TypeParam;
    auto A = this->any(30);
    for (spL_t offset = -60; offset < 60; offset += 3)
        for (upL_t count : {0u, 1u, 7u, 100u}) {
            std::vector<wtype> window(count + 1, 3);
            A.read_window(window.data(), offset, count);
            for (upL_t i = 0; i < count; i++) ASSERT_EQ(window[i], A.word_at(offset + spL_t(i)));
            ASSERT_EQ(window[count], 3u);
        }
    Held<BigFloat, wtype> B(shaped_words<wtype>(Shape::random, 20, this->random), 3, false, 6, 0);
    Held<BigFloat, wtype> copy(8);
    copy.set_BigFloat(6, B);
    EXPECT_EQ(copy.L, 8u);
    EXPECT_EQ(value_over(copy, 0), value_over(B.cut(8), 0));
    EXPECT_THROW(copy.set_BigFloat(7, B), BufferTooSmallException);
    BigFloat<wtype> down(B.base, 26);  // down into the same buffer
    down.set_BigFloat(30, B);
    EXPECT_EQ(value_over(down.cut(8), 0), value_over(copy, 0));

    BigIntO<wtype> n(1);
    n.set_word(77);
    copy.set_BigInt(n);
    EXPECT_EQ(value_over(copy, 0), 77);
    EXPECT_EQ(copy.bit_length(), 7u);
}

TYPED_TEST(BigFloatTest, OwnedNumbersMove) {
    using wtype = TypeParam;
    for (upL_t words : {upL_t(2), upL_t(1000)}) {
        BigFloatO<wtype> a(words);
        a.set_word(5);
        BigFloatO<wtype> b(std::move(a));
        EXPECT_TRUE(a.is_zero());
        BigFloatO<wtype> c(words + 50);
        c = std::move(b);
        EXPECT_EQ(c.word_at(0), 5u);
        EXPECT_GE(c.capacity, words);
        const auto* inside = reinterpret_cast<const char*>(c.base);
        const auto* object = reinterpret_cast<const char*>(&c);
        EXPECT_EQ(object <= inside && inside < object + sizeof(c), words == 2);
        b.set_word(6);  // a moved-from number is an empty one
        EXPECT_EQ(b.word_at(0), 6u);
    }
}

}  // namespace
}  // namespace lumo
