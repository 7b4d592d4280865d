#include "lumo/functions/inverse_sqrt_end.h"

#include <cmath>

#include "lumo/functions/newton_step.h"
#include "lumo/functions/plan_sizes.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "InvsqrtFloat_BigFloatR_E::run()";

template <typename wtype>
void seed(BigFloat<wtype>& T, const BigFloat<wtype>& x) {
    if (x.is_zero()) throw ArithmeticException(LOCATION, "Divide by zero.");
    if (x.sign() < 0) throw ArithmeticException(LOCATION, "Square root of negative number.");
    spL_t e;
    const double root = 1 / std::sqrt(x.get_double(e));
    constexpr double half_word = sizeof(wtype) == 4 ? 65536.0 : 4294967296.0;
    if (e % 2 == 0)
        T.set_double(root, -e / 2);
    else
        T.set_double(root * half_word, ~e / 2);  // -e - 1 is even
}

template <typename wtype>
void iterate(const MultiplyContext& ctx, BigFloat<wtype>& T, const BigFloat<wtype>& x, upL_t p, wtype* words,
             upL_t word_count) {
    using Step = NewtonStep<wtype>;
    if (p == 0) {
        seed(T, x);
        return;
    }
    require_capacity(LOCATION, T.capacity, p + 4);
    const upL_t q = Step::child_precision(p);
    iterate(ctx, T, x, q, words, word_count);

    LinearWordBuffer<wtype> buffer(words, word_count);
    BigFloat<wtype> R(buffer.cut_from_bottom(q + 3), q + 3);
    BigFloat<wtype> S(buffer.cut_from_bottom(p + 2), p + 2);
    R.set_BigFloat(q, T);
    S.set_sqr(p, ctx, R);
    T.set_mul(p, ctx, S, x);
    const Estimate estimate = Step::distance_from_one(LOCATION, T, q);
    if (estimate != Estimate::exact) {
        Step::halve({}, T);
        S.set_mul(q, ctx, T, R);
    }
    Step::correct({}, T, p, R, S, estimate);
}

}  // namespace

template <typename wtype>
InvsqrtFloat_BigFloatR_E<wtype>::InvsqrtFloat_BigFloatR_E(upL_t p_, upL_t tds_) : p(p_), tds(tds_) {
    const upL_t q = p == 0 ? 0 : NewtonStep<wtype>::child_precision(p);
    output_words = p + 4;
    word_scratch = std::max(aligned_room<wtype>(p + 6), q + 3 + p + 2);
    byte_scratch = std::max(product_bytes<wtype>(p + 8, 1), float_product_bytes<wtype>(p, tds));
}

template <typename wtype>
void InvsqrtFloat_BigFloatR_E<wtype>::run(const MultiplyContext& ctx, BigFloat<wtype>& T,
                                          const BigFloat<wtype>& x, upL_t precision, wtype* words,
                                          upL_t word_count) const {
    NewtonStep<wtype>::require_plan(LOCATION, ctx.tds, tds, precision, p);
    iterate(ctx, T, x, precision, words, word_count);
}

template <typename wtype>
void InvsqrtWord_BigFloatR_E<wtype>::run(const MultiplyContext& ctx, BigFloat<wtype>& T, wtype x,
                                         upL_t precision, wtype* words, upL_t word_count) const {
    BigFloat<wtype> number(&x, 1);
    number.L = x == 0 ? 0 : 1;
    InvsqrtFloat_BigFloatR_E<wtype>::run(ctx, T, number, precision, words, word_count);
}

template struct InvsqrtFloat_BigFloatR_E<std::uint32_t>;
template struct InvsqrtFloat_BigFloatR_E<std::uint64_t>;
template struct InvsqrtWord_BigFloatR_E<std::uint32_t>;
template struct InvsqrtWord_BigFloatR_E<std::uint64_t>;

}  // namespace lumo
