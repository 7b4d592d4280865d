#include "lumo/numbers/objects/exact_float_transform.h"

#include "transform_ring.h"

namespace lumo {
namespace {

using namespace lumo::testing;

template <typename wtype>
class ExactFloatTransformTest : public WordTest<wtype> {
 public:
    Held<ExactFloat, wtype> any(upL_t L, upL_t above = 0) {
        auto& r = this->random;
        auto words = shaped_words<wtype>(ALL_SHAPES[r() % 5], L, r);
        if (L != 0) words.back() |= 1;
        Held<ExactFloat, wtype> x(words, spL_t(r() % 21) - 10, r() % 2 == 0, 0, above);
        x.update_hash();
        return x;
    }
};
TYPED_TEST_SUITE(ExactFloatTransformTest, WordTypes);

TYPED_TEST(ExactFloatTransformTest, EveryWayGivesTheWholeProduct) {
    using wtype = TypeParam;
    using Form = ExactFloatTransformR<wtype>;
    constexpr spL_t LOW = -100;
    for (int round = 0; round < 200; round++) {
        const upL_t longest = round % 20 == 0 ? 5000 : round % 2 ? 30 : 400;
        const auto A = this->any(round % 11 ? 1 + this->random() % longest : 0);
        const auto B = this->any(round % 13 ? 1 + this->random() % longest : 0);
        const Ring<wtype> ring(2 * std::max(A.L, B.L) + 2);
        const auto& helper = ring.helper;
        Form F = ring.template form<Form>(1), G = ring.template form<Form>(2);
        const mpz_class a = value_over(A, LOW / 2), b = value_over(B, LOW / 2);
        const spL_t bottom = A.exp + B.exp, emin = bottom - spL_t(this->random() % 30) + 5;
        Held<ExactFloat, wtype> T(A.L + B.L), E(A.L + B.L + 30), S(2 * A.L);
        auto check = [&](const Held<ExactFloat, wtype>& X, const char* way) {
            ASSERT_EQ(value_over(X, LOW), &X == &S ? a * a : a * b) << way << " " << A.L << " " << B.L;
            ASSERT_EQ(X.hash_error(), 0u) << way;
            ASSERT_TRUE(X.intact() && (X.L == 0 || X.T[X.L - 1] != 0)) << way;
            ASSERT_TRUE(&X != &E || X.is_zero() || X.exp == std::min(emin, bottom)) << way;
        };
        Form::sqr_r_x(helper, S, A), check(S, "sqr_r_x");
        Form::sqr_rx_xf(helper, S, A, G), check(S, "sqr_rx_xf");
        Form::inverse_fsqr(helper, S, G), check(S, "inverse_fsqr");
        Form::mul_rr_xx(helper, T, A, B), check(T, "mul_rr_xx");
        Form::mul_rr_xx(helper, E, A, B, emin), check(E, "mul_rr_xx(exp)");
        Form::mul_rr_xf(helper, E, A, B, F, emin), check(E, "mul_rr_xf(exp)");
        Form::mul_rr_xf(helper, T, A, B, F), check(T, "mul_rr_xf");
        Form::mul_rf_xf(helper, T, A, F), check(T, "mul_rf_xf");
        Form::mul_rf_xf(helper, E, A, F, emin), check(E, "mul_rf_xf(exp)");
        G.forward(helper, A);
        Form::inverse_fmul(helper, T, F, G), check(T, "inverse_fmul");
        Form::inverse_fmul(helper, E, F, G, emin), check(E, "inverse_fmul(exp)");
    }
    // The result may replace the plain operand.
    const Ring<wtype> ring(600);
    auto A = this->any(250, 280);
    const auto B = this->any(260);
    const mpz_class product = mantissa(A) * mantissa(B);
    const spL_t bottom = A.exp + B.exp;
    Form F = ring.template form<Form>(1);
    F.forward(ring.helper, B);
    Form::mul_rf_xf(ring.helper, A, A, F, bottom - 17);
    EXPECT_EQ(value_over(A, bottom - 17), product * unit<wtype>(17));
    EXPECT_EQ(A.exp, bottom - 17);
    EXPECT_EQ(A.hash_error(), 0u);
}

TYPED_TEST(ExactFloatTransformTest, RefusesWhatCannotBeRight) {
    using wtype = TypeParam;
    using Form = ExactFloatTransformR<wtype>;
    const Ring<wtype> ring(300), longer(3000);
    const auto &helper = ring.helper, &other = longer.helper;
    const upL_t C = ring.words();
    const auto A = this->any(C + 1), B = this->any(C / 2 + 1), small = this->any(3);
    Held<ExactFloat, wtype> T(2 * C + 2), narrow(5);
    Form F = ring.template form<Form>(1), G = longer.template form<Form>(2);
    EXPECT_THROW(F.forward(helper, A), TransformTooSmallException);
    EXPECT_THROW(Form::mul_rr_xx(helper, T, B, B), ConvolutionTooSmallException);
    EXPECT_THROW(Form::mul_rr_xx(helper, narrow, small, small), BufferTooSmallException);
    EXPECT_THROW(Form::mul_rf_xf(helper, T, small, F), InvalidParametersException);  // nothing held
    F.forward(helper, small);
    G.forward(other, small);
    EXPECT_THROW(Form::inverse_fmul(helper, T, F, G), InvalidParametersException);
    EXPECT_THROW(Form::mul_rf_xf(other, T, small, F, 0), InvalidParametersException);
}

}  // namespace
}  // namespace lumo
