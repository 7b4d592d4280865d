#include "lumo/functions/inverse_sqrt.h"
#include "lumo/functions/newton_levels.h"
#include "lumo/functions/step_text.h"
#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "InvsqrtFloat_BigFloatR::run()";

/// Words of the transform for x R^2: all but the words that cancel against one, without a wrap onto them.
constexpr upL_t product_length(upL_t p) {
    return (p >> 1) + 1 + p + 8;
}

/// S := R (1 - x R^2) / 2 in magnitude. T's storage takes R^2, then x R^2.
template <typename wtype>
Estimate correction(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& S, BigFloat<wtype>& T,
                    const BigFloat<wtype>& x, const BigFloat<wtype>& R, upL_t p) {
    using Step = NewtonStep<wtype>;
    const upL_t q = (p >> 1) + 1;
    status.set_status(step_text<wtype>(" 0S ", p));
    T.set_sqr(p, ctx, R);

    status.set_status(step_text<wtype>(" 1M ", p));
    TransformHolder<wtype> transform;
    Multiply::params(transform, product_length(p), ctx.tds);
    const TransformHelper<wtype> helper(ctx, *transform, 1);
    const spL_t te = 2 - static_cast<spL_t>(q);
    BigFloatTransformR<wtype>::mul_rr_xx(helper, T, -static_cast<spL_t>(p), te, T, x);
    const Estimate estimate = Step::distance_from_one_wrapped(LOCATION, T, te, q, static_cast<wtype>(-2));
    if (estimate == Estimate::exact) return estimate;

    Step::halve(ctx.parallel(), T);
    status.set_status(step_text<wtype>(estimate == Estimate::under ? " U2M" : " O2M", p));
    S.set_mul(q, ctx, T, R);
    return estimate;
}

}  // namespace

template <typename wtype>
InvsqrtFloat_BigFloatR<wtype>::InvsqrtFloat_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), end(std::min(p_, NEWTON_END_PRECISION), tds_) {
    newton_sizes<wtype>(*this, end, 4, product_length(p));
}

template <typename wtype>
void InvsqrtFloat_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                        const BigFloat<wtype>& x, upL_t precision, wtype* words,
                                        upL_t word_count) const {
    newton_run(LOCATION, 4, *this, ctx, status, T, x, precision, words, word_count, correction<wtype>);
}

template struct InvsqrtFloat_BigFloatR<std::uint32_t>;
template struct InvsqrtFloat_BigFloatR<std::uint64_t>;

}  // namespace lumo
