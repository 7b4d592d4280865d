#include "lumo/functions/inverse_nth_root.h"
#include "lumo/functions/newton_step.h"
#include "lumo/functions/plan_sizes.h"
#include "lumo/functions/step_text.h"
#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

/// Precision of R, which leaves room for the factor n in the error of its product.
constexpr upL_t child(upL_t p) {
    return (p >> 1) + 3;
}

/// Words of the transform for R^k x: the words that are known beforehand may wrap onto others of their kind.
constexpr upL_t product_length(upL_t p) {
    return child(p) + p + 9;
}

/// T := T x, the words [ie, te).
template <typename wtype>
void multiply_window(const MultiplyContext& ctx, BigFloat<wtype>& T, const BigFloat<wtype>& x, upL_t p,
                     spL_t ie, spL_t te) {
    TransformHolder<wtype> transform;
    Multiply::params(transform, product_length(p), ctx.tds);
    const TransformHelper<wtype> helper(ctx, *transform, 1);
    BigFloatTransformR<wtype>::mul_rr_xx(helper, T, ie, te, T, x);
}

}  // namespace

template <typename wtype>
InvNthRootFloat_BigFloatR_P<wtype>::InvNthRootFloat_BigFloatR_P(upL_t p, upL_t tds) : power(p, tds) {
    byte_scratch = std::max(product_bytes<wtype>(product_length(p), tds), power.byte_scratch);
}

template <typename wtype>
void InvNthRootFloat_BigFloatR_P<wtype>::run_expanded(const MultiplyContext& ctx, StatusNode& status,
                                                      BigFloat<wtype>& T, const BigFloat<wtype>& x,
                                                      std::uint32_t n, upL_t p, const BigFloat<wtype>& R,
                                                      BigFloat<wtype> B) const {
    constexpr const char* LOCATION = "InvNthRootFloat_BigFloatR_P::run_expanded()";
    const upL_t q = child(p);
    status.set_status(step_text<wtype>(" 0P ", p));
    power.run(ctx, &status, T, R, upL_t(n) + 1, p, B.base, B.capacity);

    // The product is R up to n times R's error, which stays below the word at te - 1.
    status.set_status(step_text<wtype>(" 1M ", p));
    const spL_t te = R.top() - static_cast<spL_t>(q) + 3;
    multiply_window(ctx, T, x, p, R.top() - static_cast<spL_t>(p), te);
    BigFloat<wtype> target = R;
    target.truncate_above(te);
    NewtonStep<wtype>::residual(LOCATION, ctx.parallel(), B, q, target, T, te, true);
    if (B.is_zero()) {
        T.set_BigFloat(p, R, ctx.parallel());
        return;
    }
    status.set_status(step_text<wtype>(" 2D ", p));
    NewtonStep<wtype>::divide_by_word(ctx.parallel(), T, q, B, n);
    B.set_BigFloat(q, T, ctx.parallel());
    T.set_add(p, ctx.parallel(), R, B);
}

template <typename wtype>
void InvNthRootFloat_BigFloatR_P<wtype>::run_factored(const MultiplyContext& ctx, StatusNode& status,
                                                      BigFloat<wtype>& T, const BigFloat<wtype>& x,
                                                      std::uint32_t n, upL_t p, const BigFloat<wtype>& R,
                                                      BigFloat<wtype> B) const {
    constexpr const char* LOCATION = "InvNthRootFloat_BigFloatR_P::run_factored()";
    using Step = NewtonStep<wtype>;
    const upL_t q = child(p);
    status.set_status(step_text<wtype>(" 0P ", p));
    power.run(ctx, &status, T, R, n, p, B.base, B.capacity);

    // n times R's error may reach a word higher than R's error alone.
    status.set_status(step_text<wtype>(" 1M ", p));
    const spL_t te = 3 - static_cast<spL_t>(q);
    multiply_window(ctx, T, x, p, -static_cast<spL_t>(p), te);
    const Estimate estimate = Step::distance_from_one_wrapped(LOCATION, T, te, q, static_cast<wtype>(-2));
    if (estimate == Estimate::exact) {
        T.set_BigFloat(p, R, ctx.parallel());
        return;
    }
    const bool under = estimate == Estimate::under;
    status.set_status(step_text<wtype>(under ? " U2M" : " O2M", p));
    B.set_mul(q, ctx, T, R);
    status.set_status(step_text<wtype>(under ? " U3D" : " O3D", p));
    Step::divide_by_word(ctx.parallel(), T, q, B, n);
    B.set_BigFloat(q, T, ctx.parallel());
    Step::correct(ctx.parallel(), T, p, R, B, estimate);
}

template struct InvNthRootFloat_BigFloatR_P<std::uint32_t>;
template struct InvNthRootFloat_BigFloatR_P<std::uint64_t>;

}  // namespace lumo
