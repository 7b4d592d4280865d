#include "lumo/numbers/objects/big_float.h"

#include <cmath>
#include <limits>

#include "death_output.h"
#include "held_numbers.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/big_int.h"
#include "lumo/numbers/objects/fraction_float.h"
#include "scratch.h"

namespace lumo {
namespace {

using namespace lumo::testing;

template <typename wtype>
class BigFloatTest : public WordTest<wtype> {
 public:
    /// Up to `longest` words of any shape, bottom within 40 words of zero.
    HeldFloat<wtype> any(upL_t longest) {
        auto& r = this->random;
        const Shape shape = ALL_SHAPES[r() % 5];
        return {shaped_words<wtype>(shape, r() % (longest + 1), r), spL_t(r() % 81) - 40, r() % 2 == 0,
                r() % 3, 3};
    }
};
TYPED_TEST_SUITE(BigFloatTest, WordTypes);

constexpr spL_t LOW = -1000;

TYPED_TEST(BigFloatTest, SumsAreExactOrCutToTheirPrecision) {
    using wtype = TypeParam;
    for (int round = 0; round < 3000; round++) {
        auto A = this->any(40);
        // Now and then the same words, or all but the lowest, so that they cancel.
        HeldFloat<wtype> B =
            round % 7 ? this->any(40)
                      : HeldFloat<wtype>(std::vector<wtype>(A.T, A.T + A.L), A.exp, round % 3 == 0);
        if (B.L > 1 && round % 2) B.T[0] ^= 1;
        const upL_t p = 1 + this->random() % 60;
        for (bool subtract : {false, true}) {
            HeldFloat<wtype> T(200);
            const ParallelContext ctx{1 + upL_t(round) % 3, &serial_parallelizer()};
            subtract ? T.set_sub(p, ctx, A, B) : T.set_add(p, ctx, A, B);
            const mpz_class b = subtract ? mpz_class(-value_over(B, LOW)) : value_over(B, LOW);
            const mpz_class error = abs(value_over(T, LOW) - value_over(A, LOW) - b);
            ASSERT_NO_THROW(T.check_normalization());
            ASSERT_TRUE(T.L <= p + 2 && (T.L != 0 || T.positive));
            if (A.L == 0 || B.L == 0) {
                const BigFloat<wtype>& only = A.L == 0 ? B : A;
                ASSERT_EQ(abs(value_over(T, LOW)), abs(value_over(only.cut(p + 2), LOW)));
                continue;
            }
            const spL_t lowest = std::max(A.top(), B.top()) - static_cast<spL_t>(p) - 1;
            // Cut, each operand loses less than one unit of the lowest word.
            const bool whole = lowest <= std::min(A.exp, B.exp);
            ASSERT_LT(error, whole ? mpz_class(1) : mpz_class(unit<wtype>(lowest - LOW) * 2)) << round;
        }
    }
    const HeldFloat<wtype> A({5, 7}, 0), B({1}, -100), zero(1);
    HeldFloat<wtype> T(5), small(4);
    T.set_uadd(3, {}, A, B);  // B lies wholly below the last word
    EXPECT_EQ(value_over(T, LOW), value_over(A, LOW));
    EXPECT_THROW(small.set_uadd(3, {}, A, B), BufferTooSmallException);
    T.set_usub(3, {}, A, A);
    EXPECT_TRUE(T.is_zero() && T.positive && T.exp == 0);
    EXPECT_DEATH(dying([&] { T.set_usub(3, {}, B, A); }), "BigFloat::set_usub");
}

TYPED_TEST(BigFloatTest, FixedRangeDifferenceWraps) {
    using wtype = TypeParam;
    for (int round = 0; round < 500; round++) {
        auto A = this->any(30), B = this->any(30);
        const upL_t L = this->random() % 40;
        const spL_t top = spL_t(this->random() % 100) - 50;
        HeldFloat<wtype> T(L + 1);
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
            std::vector<wtype> words = shaped_words<wtype>(ALL_SHAPES[round % 5], 3, this->random);
            words.insert(words.end(), A.T, A.T + A.L);
            const HeldFloat<wtype> C(words, A.exp - 3, B.positive);
            ASSERT_EQ((BigFloat<wtype>::ucmp(A, C)), cmp(abs(value_over(A, LOW)), abs(value_over(C, LOW))));
        } else {
            ASSERT_EQ((BigFloat<wtype>::cmp(A, B)), sgn(mpz_class(value_over(A, LOW) - value_over(B, LOW))));
        }
    }
}

TYPED_TEST(BigFloatTest, ProductsAtEverySmallShape) {
    using wtype = TypeParam;
    Multiply::ensure_tables(1 << 16);
    const Scratch scratch(Multiply::max_buffer_size<wtype>(700, 1));
    const MultiplyContext ctx = scratch.context();
    for (int round = 0; round < 1500; round++) {
        const upL_t longest = round % 10 ? 25 : 300;
        auto A = this->any(longest), B = this->any(longest);
        const upL_t p = round % 3 ? 600 : 1 + this->random() % 60;
        const bool square = round % 4 == 0, small = round % 5 == 0;
        const BigFloat<wtype>& b = square ? A : B;
        HeldFloat<wtype> T(std::min(p + 2, A.L + b.L));
        if (small)
            T.set_mul_small(p, ctx, A, b);
        else
            square ? T.set_sqr(p, ctx, A) : T.set_mul(p, ctx, A, b);
        const mpz_class exact = value_over(A, LOW / 2) * value_over(b, LOW / 2);
        ASSERT_NO_THROW(T.check_normalization());
        ASSERT_TRUE(T.intact());
        // The cuts cost less than one unit each, the low columns left out a few units.
        const spL_t lowest = A.top() + b.top() - static_cast<spL_t>(p + 2);
        const bool whole = A.L + b.L <= p + 2;
        const mpz_class bound = whole ? mpz_class(1) : mpz_class(unit<wtype>(lowest - LOW) * (4 + 2 * p));
        ASSERT_LT(abs(value_over(T, LOW) - exact), bound) << A.L << " " << b.L << " " << p;
    }
    const spL_t far = spL_t(1) << 62;
    const HeldFloat<wtype> A({3, 5}, 0), huge({3}, far - 1), tiny({3}, -far - 9);
    HeldFloat<wtype> T(3);
    EXPECT_THROW(T.set_mul(9, ctx, A, A), BufferTooSmallException);
    EXPECT_THROW(T.set_sqr(9, ctx, A), BufferTooSmallException);
    EXPECT_THROW(T.set_sqr(9, ctx, huge), ExponentOverflowException) << "the top alone";
    EXPECT_THROW(T.set_mul(9, ctx, tiny, tiny), ExponentOverflowException);
}

TYPED_TEST(BigFloatTest, WordFactorsDivisorsAndShifts) {
    using wtype = TypeParam;
    using signed_word = typename WordTraits<wtype>::signed_word;
    for (int round = 0; round < 1000; round++) {
        auto A = this->any(30);
        const upL_t p = 1 + this->random() % 40;
        const mpz_class a = value_over(A.cut(p + 1), LOW);
        const auto m = static_cast<wtype>(this->random() >> this->random() % 64);
        HeldFloat<wtype> T(p + 3);
        T.set_mul_uW(p, A, m);
        ASSERT_EQ(value_over(T, LOW), a * to_mpz(&m, 1));
        const auto s = static_cast<spL_t>(this->random()) >> this->random() % 64;
        T.set_mul_sL(p, A, s);
        ASSERT_EQ(value_over(T, LOW), a * mpz_class(static_cast<long>(s)));

        const spL_t bits = spL_t(this->random() % 401) - 200;
        const mpz_class before = value_over(A, LOW);
        A.mp2(bits);
        ASSERT_EQ(value_over(A, LOW) << (bits < 0 ? -bits : 0), before << (bits > 0 ? bits : 0));

        auto d = static_cast<signed_word>(this->random() >> this->random() % (this->W - 2)) / 2;
        const auto magnitude = static_cast<wtype>(d < 0 ? -d : d);
        if ((magnitude & (magnitude - 1)) == 0) continue;
        T.set_div_sW(p, {}, A, d);
        ASSERT_NO_THROW(T.check_normalization());
        // The operand is d T + remainder, |remainder| < |d| units of the lowest word of T.
        const mpz_class divisor(static_cast<long>(d));
        const mpz_class rest = value_over(A.cut(p + 2), LOW) - value_over(T, LOW) * divisor;
        ASSERT_LT(abs(rest), abs(divisor) * unit<wtype>(A.top() - spL_t(p + 2) - LOW));
        ASSERT_TRUE(T.is_zero() || T.L >= p + 1);
    }
    const auto A = this->any(5);
    HeldFloat<wtype> T(20), full({1, 1}, 0), high({1}, std::numeric_limits<spL_t>::max() - 1);
    EXPECT_THROW(T.set_div_sW(5, {}, A, 0), ArithmeticException);
    EXPECT_THROW(T.set_div_sW(5, {}, A, -1), InvalidParametersException);
    T.set_div_sW(5, {}, A, 1);
    EXPECT_EQ(value_over(T, LOW), value_over(A, LOW));
    EXPECT_THROW(high.mp2(2 * this->W), ExponentOverflowException);
    EXPECT_THROW(full.mul_uW(3), BufferTooSmallException);
    full.mul_uW(1);
    full.mul_uW(0);
    EXPECT_TRUE(full.is_zero());
}

TYPED_TEST(BigFloatTest, DoublesComeAndGo) {
    using wtype = TypeParam;
    constexpr int SHIFT = 64 * 40;
    const auto exact = [](double x) {
        int exponent;
        const mpz_class digits(std::ldexp(std::frexp(x, &exponent), 53));
        return mpz_class(digits << (SHIFT + exponent - 53));
    };
    const auto scaled = [&](double x, spL_t words) { return std::ldexp(x, int(words * spL_t(this->W))); };
    for (double x : {1., -1.5, 0x1p52, 0x1p53, 1e300, -1e-300, 0x1p-1074, 0x1.fffffffffffffp-1023,
                     0x1.fffffffffffffp1023, 3.141592653589793, 0x1p-32, 0x1p32, 0x1p64, 0x1p-64})
        for (spL_t e : {-9, 0, 4}) {
            HeldFloat<wtype> T(3), U(160 / this->W + 1);
            T.set_double(x, e);
            T.check_normalization();
            const spL_t low = e - SHIFT / int(this->W);
            EXPECT_EQ(value_over(T, low), exact(x)) << x;
            spL_t top;
            const double again = T.get_double(top);
            EXPECT_EQ(scaled(again, top - e), x);
            if (std::abs(x) < 1e-200 || std::abs(x) > 1e290) continue;
            for (double lo : {0., x * 0x1p-54, -x * 0x1.8p-56, x * 0x1p-73}) {
                U.set_double_double({x, lo}, e);
                EXPECT_EQ(value_over(U, low), exact(x) + exact(lo)) << x << " " << lo;
                const DoubleDouble back = U.get_double_double(top);
                EXPECT_TRUE(scaled(back.hi, top - e) == x && scaled(back.lo, top - e) == lo) << x << lo;
            }
            U.set_double_double({x, x * 0x1p-200}, e);
            EXPECT_EQ(value_over(U, low), exact(x));
        }
    HeldFloat<wtype> zero(3), apart(160 / this->W + 1);
    apart.set_double_double({1, 0x1p-110}, 0);
    EXPECT_EQ(value_over(apart, -SHIFT / int(this->W)), exact(1) + exact(0x1p-110));
    zero.set_double(-0.0, 5);
    spL_t top = 9;
    EXPECT_TRUE(zero.is_zero());
    EXPECT_EQ(zero.get_double(top), 0.0);
    EXPECT_EQ(zero.get_double_double(top).hi, 0.0);
}

TYPED_TEST(BigFloatTest, NegatesAWrappedValue) {
    using wtype = TypeParam;
    for (int round = 0; round < 1000; round++) {
        // -x modulo 2^(W n) for a short x of any shape.
        const upL_t n = 12;
        const auto x = shaped_words<wtype>(ALL_SHAPES[round % 5], this->random() % 10, this->random);
        const mpz_class magnitude = to_mpz(x.data(), x.size());
        if (magnitude == 0) continue;
        const mpz_class wrapped = unit<wtype>(n) - magnitude;
        HeldFloat<wtype> A(to_words<wtype>(wrapped, n), -3), B(to_words<wtype>(wrapped, n), -3);
        A.two_complement();
        ASSERT_EQ(value_over(A, -3), magnitude);
        A.check_normalization();
        B.normalize_ones();
        B.check_normalization();
        // All ones, as far as they go.
        ASSERT_EQ(mpz_class(value_over(B, -3) - wrapped) % unit<wtype>(B.top() + 3), 0);
    }
    const wtype ones = this->ONES;
    HeldFloat<wtype> A({0, 5, 0, ones, ones}, 0), B({ones, ones}, 0);
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
    HeldFloat<wtype> A(words, -2), B({4, 5, 0, 6}, 10);
    const mpz_class value = value_over(A, -2);
    A.strip_lzs_aligned();
    EXPECT_TRUE(A.L == unit_words + 5 && value_over(A, -2) == value);
    A.strip_lzs();
    EXPECT_TRUE(A.L == unit_words + 4 && value_over(A, -2) == value);
    A.truncate(4);
    EXPECT_TRUE(A.L == 6 && A.T[5] == 9);
    for (auto [position, left] : {std::pair<spL_t, upL_t>{14, 4}, {13, 2}, {10, 0}}) {
        B.truncate_above(position);
        EXPECT_EQ(B.L, left);
    }
}

TYPED_TEST(BigFloatTest, WordsAddedInPlaceRipple) {
    using wtype = TypeParam;
    const wtype ones = this->ONES;
    HeldFloat<wtype> A({ones, ones, ones}, -1, true, 0, 1);
    A.add_ip(ones, 0);
    EXPECT_EQ(A.L, 4u);
    EXPECT_EQ(value_over(A, -1), unit<wtype>(3) - 1 + unit<wtype>(1) * to_mpz(&ones, 1));
    EXPECT_DEATH(dying([&] { A.add_ip(1, 4); }), "BigFloat::add_ip\\(\\): Magnitude is out of range.");
    EXPECT_THROW(A.add_ip(1, 3), BufferTooSmallException);

    HeldFloat<wtype> B({5, ones, ones}, 2, true, 0, 1), C({5, ones, 6}, 2), D({ones}, 0);
    B.purturb_up(3);
    EXPECT_EQ(B.L, 3u);
    B.purturb_up(1);
    EXPECT_EQ(B.L, 3u);  // one word more at the top, one less at the bottom
    EXPECT_EQ(value_over(B, 2), unit<wtype>(3));
    C.purturb_up(1);
    EXPECT_EQ(value_over(C, 2), 5 + unit<wtype>(2) * 7);
    EXPECT_THROW(D.purturb_up(0), BufferTooSmallException);
}

TYPED_TEST(BigFloatTest, WindowsFractionsAndCopies) {
    using wtype = TypeParam;
    const auto A = this->any(30);
    for (spL_t offset = -60; offset < 60; offset += 3)
        for (upL_t count : {0u, 1u, 7u, 100u}) {
            std::vector<wtype> window(count + 1, 3);
            A.read_window(window.data(), offset, count);
            for (upL_t i = 0; i < count; i++) ASSERT_EQ(window[i], A.word_at(offset + spL_t(i)));
            ASSERT_EQ(window[count], 3u);
        }
    wtype words[9], digits[3];
    FractionFloat<wtype> fraction(words, 9);
    EXPECT_THROW(fraction.set_BigFloat(A, 10), BufferTooSmallException);
    fraction.set_BigFloat(A, 9);
    const mpz_class x = to_mpz(words, 9) * 10 * 10 * 10;
    fraction.template mul_uW<3>(digits, 10);
    EXPECT_EQ(to_mpz(words, 9) + (100 * digits[0] + 10 * digits[1] + digits[2]) * unit<wtype>(9), x);

    const HeldFloat<wtype> B(shaped_words<wtype>(Shape::random, 20, this->random), 3, false, 6, 0);
    HeldFloat<wtype> copy(8);
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
        BigFloatO<wtype> a(words), c(words + 50);
        a.set_word(5);
        BigFloatO<wtype> b(std::move(a));
        EXPECT_TRUE(a.is_zero());
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
