#include "lumo/numbers/objects/big_float_transform.h"

#include "failures.h"
#include "transform_ring.h"

namespace lumo {
namespace {

using namespace lumo::testing;

template <typename wtype>
class BigFloatTransformTest : public WordTest<wtype> {
 public:
    HeldFloat<wtype> any(upL_t L, spL_t exp) {
        auto words = shaped_words<wtype>(ALL_SHAPES[this->random() % 5], L, this->random);
        words.back() |= 1;
        return {words, exp, this->random() % 2 == 0};
    }
    /// How far T is from A B modulo 2^(W te), in units of position `ie` - 2, as a residue next to zero.
    static mpz_class distance(const BigFloat<wtype>& T, spL_t ie, spL_t te, const BigFloat<wtype>& A,
                              const BigFloat<wtype>& B) {
        const spL_t low = std::min(A.exp + B.exp, ie - 2);
        mpz_class error =
            abs(value_over(T, low)) - abs(mantissa(A) * mantissa(B)) * unit<wtype>(A.exp + B.exp - low);
        const mpz_class ring = unit<wtype>(te - low);
        mpz_fdiv_r(error.get_mpz_t(), error.get_mpz_t(), ring.get_mpz_t());
        if (error > ring / 2) error = ring - error;
        return error / unit<wtype>(ie - 2 - low);
    }
};
TYPED_TEST_SUITE(BigFloatTransformTest, WordTypes);

/// All ways to multiply the same two numbers, over whole products and windows, from schoolbook sizes up.
TYPED_TEST(BigFloatTransformTest, WindowsOfProductsThatFit) {
    using wtype = TypeParam;
    using Form = BigFloatTransformR<wtype>;
    for (int round = 0; round < 300; round++) {
        const upL_t longest = round % 20 == 0 ? 9000 : round % 3 ? 40 : 600;
        const upL_t AL = 1 + this->random() % longest, BL = 1 + this->random() % longest;
        const auto A = this->any(AL, spL_t(this->random() % 50) - 25),
                   B = this->any(BL, spL_t(this->random() % 50));
        const Ring<wtype> ring(AL + BL);
        const auto& helper = ring.helper;
        const spL_t e = A.exp + B.exp, top = A.top() + B.top();
        const spL_t ie = round % 4 ? e - 5 + spL_t(this->random() % (AL + BL + 8)) : e;
        const spL_t te = round % 3 ? ie + 1 + spL_t(this->random() % (AL + BL)) : top;
        if (te <= ie) continue;
        HeldFloat<wtype> T(static_cast<upL_t>(te - ie) + 2);
        Form F = ring.template form<Form>(1), G = ring.template form<Form>(2);
        auto check = [&](const BigFloat<wtype>& a, const BigFloat<wtype>& b, const char* way) {
            ASSERT_TRUE(T.intact()) << way;
            ASSERT_TRUE(T.is_zero() || (T.top() <= te && T.exp >= ie - 2 && T.T[T.L - 1] != 0)) << way;
            ASSERT_TRUE(T.is_zero() || T.positive == (a.positive == b.positive)) << way;
            // Each operand lost less than one unit.
            ASSERT_LE(this->distance(T, ie, te, a, b), 2)
                << way << " " << AL << " " << BL << " " << e << " " << ie << " " << te;
        };
        Form::mul_rr_xx(helper, T, ie, te, A, B), check(A, B, "mul_rr_xx");
        Form::mul_rr_xf(helper, T, ie, te, A, B, F), check(A, B, "mul_rr_xf");
        Form::mul_rf_xf(helper, T, ie, te, A, F), check(A, B, "mul_rf_xf");
        G.forward(helper, A, AL);
        F.forward(helper, B, BL);
        Form::inverse_fmul(helper, T, ie, te, G, F), check(A, B, "inverse_fmul");
        if (2 * AL > ring.words()) continue;
        Form::sqr_r_x(helper, T, ie, te, A), check(A, A, "sqr_r_x");
        Form::sqr_rx_xf(helper, T, ie, te, A, G), check(A, A, "sqr_rx_xf");
        G.forward(helper, A, AL);
        Form::inverse_fsqr(helper, T, ie, te, G), check(A, A, "inverse_fsqr");
    }
}

/// A Newton step's product: the top is known, so the ring is as short as the rest.
TYPED_TEST(BigFloatTransformTest, TopWordsMayWrapOntoWordsBelowTheWindow) {
    using wtype = TypeParam;
    using Form = BigFloatTransformR<wtype>;
    int wrapped = 0;
    for (int round = 0; round < 120; round++) {
        // The longest rings belong to the number-theoretic transform, which wraps with the other sign.
        const upL_t h = round % 40 == 5 ? 900000 / this->W : 100 + this->random() % (round % 10 ? 400 : 6000);
        const auto A = this->any(2 * h, -spL_t(2 * h)), B = this->any(h, -spL_t(h));
        const Ring<wtype> ring(2 * h + 8);
        wrapped += 3 * h > ring.words();
        // Wanted: the middle third; the top third of the product is dropped.
        const spL_t te = -spL_t(h), ie = -spL_t(2 * h) + 2;
        HeldFloat<wtype> T(h + 2);
        Form image = ring.template form<Form>(1);
        const auto check = [&] {
            ASSERT_TRUE(T.intact());
            ASSERT_LE(this->distance(T, ie, te, A, B), 4) << h << " " << ring.words();
        };
        Form::mul_rr_xx(ring.helper, T, ie, te, A, B), check();
        Form::mul_rr_xf(ring.helper, T, ie, te, B, A, image), check();
        Form::mul_rf_xf(ring.helper, T, ie, te, B, image), check();
    }
    EXPECT_GT(wrapped, 60);
}

/// x R = 1 - small or 1 + small: in the window next to zero or next to 2^(W te).
TYPED_TEST(BigFloatTransformTest, ValueJustBelowOneComesOutNegative) {
    using wtype = TypeParam;
    const upL_t n = 300, h = 150;  // R knows half the words
    const HeldFloat<wtype> x(shaped_words<wtype>(Shape::random, n, this->random), -spL_t(n), false);
    const Ring<wtype> ring(n + 20);
    for (int side : {0, 1}) {
        const mpz_class r = abs(unit<wtype>(n + h) / mantissa(x)) + side;
        const HeldFloat<wtype> R(to_words<wtype>(r, h + 1), -spL_t(h), false);
        const spL_t te = 4 - spL_t(h), ie = -spL_t(n) - 4;
        HeldFloat<wtype> T(n);
        BigFloatTransformR<wtype>::mul_rr_xx(ring.helper, T, ie, te, x, R);
        EXPECT_TRUE(T.positive);
        EXPECT_EQ(T.word_at(te - 1), side ? wtype(0) : this->ONES);
        EXPECT_LE(this->distance(T, ie, te, x, R), 4);
    }
}

TYPED_TEST(BigFloatTransformTest, WindowArithmetic) {
    using Form = BigFloatTransformR<TypeParam>;
    typename Form::Window w;
    for (auto [ie, te] : {std::pair<spL_t, spL_t>{-9, 0}, {10, 12}, {5, 5}})
        EXPECT_TRUE(Form::params(w, ie, te, 0, 10, 20)) << "beside the product, or empty";
    EXPECT_FALSE(Form::params(w, -9, 1, 0, 10, 20));
    EXPECT_TRUE(w.skip == 0 && w.exp == 0 && w.length == 1 && w.overflow == 0);
    EXPECT_FALSE(Form::params(w, 3, 99, 0, 10, 10));  // the ring is full, nothing wraps
    EXPECT_TRUE(w.skip == 3 && w.exp == 3 && w.length == 7 && w.overflow == 0);
    EXPECT_FALSE(Form::params(w, 5, 8, 1, 10, 7));  // three words wrap: positions 4 .. 7 are clean
    EXPECT_TRUE(w.skip == 4 && w.exp == 5 && w.length == 3 && w.overflow == 3);
    EXPECT_EQ(refusal([&] { Form::params(w, 5, 9, 1, 10, 7); }),
              "BigFloatTransformR::params() ie = 5, te = 9");
    EXPECT_THROW(Form::params(w, 3, 8, 1, 10, 7), ConvolutionTooSmallException);
}

TYPED_TEST(BigFloatTransformTest, RefusesWhatCannotBeRight) {
    using wtype = TypeParam;
    using Form = BigFloatTransformR<wtype>;
    const Ring<wtype> ring(400), longer(4000);
    const auto &helper = ring.helper, &other = longer.helper;
    const upL_t C = ring.words();
    const auto A = this->any(C + 1, 0), B = this->any(3, 0);
    HeldFloat<wtype> T(C + 10), narrow(2), zero(1);

    MultiplyContext tight = ring.scratch.context();
    tight.scratch_bytes = TransformHelper<wtype>::bytes(ring.transform, 3) - 1;
    EXPECT_THROW((TransformHelper<wtype>(tight, ring.transform, 3)), BufferTooSmallException);

    Form F = ring.template form<Form>(1), G = longer.template form<Form>(2);
    EXPECT_THROW(F.forward(helper, A, C), TransformTooSmallException);
    EXPECT_THROW(Form::mul_rf_xf(helper, T, 0, 5, B, F), InvalidParametersException);  // nothing held
    F.forward(helper, B, 9);
    G.forward(other, B, 9);
    EXPECT_EQ(message_of([&] { Form::inverse_fmul(helper, T, 0, 5, F, G); }),
              "Mismatching Transform Parameters");
    EXPECT_THROW(Form::mul_rf_xf(other, T, 0, 5, B, F), InvalidParametersException);
    EXPECT_EQ(message_of([&] { Form::mul_rr_xf(other, T, 0, 5, B, B, F); }), "Invalid Transform Parameters");
    EXPECT_THROW(Form::mul_rr_xx(helper, narrow, 0, 5, B, B), BufferTooSmallException);
    EXPECT_THROW(Form::mul_rr_xx(helper, T, 0, spL_t(C) + 4, A, B), ConvolutionTooSmallException);

    // A product that misses the window still leaves the image behind; zero has an image too.
    Form::mul_rr_xf(helper, T, 50, 60, B, B, F);
    EXPECT_TRUE(T.is_zero());
    Form::inverse_fsqr(helper, T, 0, 6, F);
    EXPECT_EQ(value_over(T, 0), mantissa(B) * mantissa(B));
    Form::mul_rr_xf(helper, T, 0, 6, B, zero, F);
    Form::mul_rf_xf(helper, T, 0, 6, B, F);
    EXPECT_TRUE(T.is_zero());
    Form::sqr_rx_xf(helper, T, 50, 60, B, F);
    Form::inverse_fsqr(helper, T, 0, 6, F);
    EXPECT_EQ(value_over(T, 0), mantissa(B) * mantissa(B));
}

TYPED_TEST(BigFloatTransformTest, ResultMayReplaceItsOperand) {
    using wtype = TypeParam;
    using Form = BigFloatTransformR<wtype>;
    const Ring<wtype> ring(500);
    const auto A = this->any(200, 3);
    const std::vector<wtype> words(A.T, A.T + A.L);
    HeldFloat<wtype> T(words, 3, A.positive, 7, 210), U(words, 3, A.positive, 0, 210);
    Form F = ring.template form<Form>(1);
    Form::sqr_rx_xf(ring.helper, T, 6, 2 * T.top(), T, F);
    EXPECT_EQ(value_over(T, 6), mantissa(A) * mantissa(A));
    Form::mul_rf_xf(ring.helper, U, 6, 2 * U.top(), U, F);
    EXPECT_EQ(value_over(U, 6), value_over(T, 6));
}

}  // namespace
}  // namespace lumo
