#include "lumo/functions/reciprocal.h"

#include "lumo/functions/newton_levels.h"
#include "lumo/functions/step_text.h"
#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "Reciprocal_BigFloatR::run()";

/// S := (distance from one of x R) R, through one kept image of R. The distance goes to T's storage.
template <typename wtype>
Estimate correction(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& S, BigFloat<wtype>& T,
                    const BigFloat<wtype>& x, const BigFloat<wtype>& R, upL_t p) {
    using Transform = BigFloatTransformR<wtype>;
    const auto q = static_cast<spL_t>((p >> 1) + 1);
    TransformHolder<wtype> transform;
    Multiply::params(transform, p + 8, ctx.tds);
    const TransformHelper<wtype> helper(ctx, *transform, 2);
    Transform image(*transform, helper.array(1));

    status.set_status(step_text<wtype>(" 0M ", static_cast<upL_t>(q)));
    Transform::mul_rr_xf(helper, T, -static_cast<spL_t>(p), 2 - q, x, R, image);
    const Estimate estimate = NewtonStep<wtype>::distance_from_one_wrapped(
        LOCATION, T, 2 - q, static_cast<upL_t>(q), static_cast<wtype>(-1));
    if (estimate == Estimate::exact) return estimate;

    status.set_status(
        step_text<wtype>(estimate == Estimate::under ? " U1M " : " O1M ", static_cast<upL_t>(q)));
    const spL_t top = T.top() + R.top();
    Transform::mul_rf_xf(helper, S, top - q, top, T, image);
    return estimate;
}

}  // namespace

template <typename wtype>
Reciprocal_BigFloatR<wtype>::Reciprocal_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), end(std::min(p_, NEWTON_END_PRECISION), tds_) {
    newton_sizes<wtype>(*this, end, 3, p + 8);
}

template <typename wtype>
void Reciprocal_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                      const BigFloat<wtype>& x, upL_t precision, wtype* words,
                                      upL_t word_count) const {
    newton_run(LOCATION, 3, *this, ctx, status, T, x, precision, words, word_count, correction<wtype>);
}

template <typename wtype>
void Reciprocal_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                      const BigFloat<wtype>& x, upL_t precision) const {
    AlignedBufferC rest = ctx.buffer();
    wtype* words = rest.spawn_words<wtype>(word_scratch);
    run(ctx.with_scratch(rest), status, T, x, precision, words, word_scratch);
}

template struct Reciprocal_BigFloatR<std::uint32_t>;
template struct Reciprocal_BigFloatR<std::uint64_t>;

}  // namespace lumo
