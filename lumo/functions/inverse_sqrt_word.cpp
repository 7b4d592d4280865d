#include "lumo/functions/inverse_sqrt.h"
#include "lumo/functions/newton_levels.h"
#include "lumo/functions/step_text.h"
#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "InvsqrtWord_BigFloatR::run()";

/// S := R (1 - x R^2) / 2 in magnitude, through one kept image of R. T's storage takes R^2, then x R^2.
template <typename wtype>
Estimate correction(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& S, BigFloat<wtype>& T,
                    wtype x, const BigFloat<wtype>& R, upL_t p) {
    using Step = NewtonStep<wtype>;
    using Transform = BigFloatTransformR<wtype>;
    const auto q = static_cast<spL_t>((p >> 1) + 1);
    TransformHolder<wtype> transform;
    Multiply::params(transform, p + 6, ctx.tds);
    const TransformHelper<wtype> helper(ctx, *transform, 2);
    Transform image(*transform, helper.array(1));

    // An error of the lowest word kept, at -p - 2, grows by x < 2^W. Words of R^2 from te upward reach only
    // words of x R^2 that are dropped.
    status.set_status(step_text<wtype>(" 0S ", p));
    const spL_t te = 2 - q;
    Transform::sqr_rx_xf(helper, T, -static_cast<spL_t>(p), te, R, image);
    if (!T.is_zero()) {
        T.mul_uW(x, ctx.parallel());
        T.truncate_above(te);
    }
    const Estimate estimate =
        Step::distance_from_one_wrapped(LOCATION, T, te, static_cast<upL_t>(q), static_cast<wtype>(-2));
    if (estimate == Estimate::exact) return estimate;

    Step::halve(ctx.parallel(), T);
    status.set_status(step_text<wtype>(estimate == Estimate::under ? " U1M" : " O1M", p));
    const spL_t top = T.top() + R.top();
    Transform::mul_rf_xf(helper, S, top - q, top, T, image);
    return estimate;
}

}  // namespace

template <typename wtype>
InvsqrtWord_BigFloatR<wtype>::InvsqrtWord_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), end(std::min(p_, NEWTON_END_PRECISION), tds_) {
    newton_sizes<wtype>(*this, end, 4, p + 8);
}

template <typename wtype>
void InvsqrtWord_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                       wtype x, upL_t precision, wtype* words, upL_t word_count) const {
    newton_run(LOCATION, 4, *this, ctx, status, T, x, precision, words, word_count, correction<wtype>);
}

template struct InvsqrtWord_BigFloatR<std::uint32_t>;
template struct InvsqrtWord_BigFloatR<std::uint64_t>;

}  // namespace lumo
