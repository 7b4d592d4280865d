#include "lumo/functions/division.h"

#include "lumo/functions/newton_levels.h"
#include "lumo/functions/step_text.h"
#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "Division_BigFloatR<wtype>::run()";
constexpr const char* BUFFER_LOCATION = "Division_BigFloatR::run()";

}  // namespace

template <typename wtype>
Division_BigFloatR<wtype>::Division_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), p_r((p_ >> 1) + 1), reciprocal(p_r, tds_) {
    R_words = align_words<wtype>(std::max(p + 5 - p_r, reciprocal.output_words));
    Q_words = aligned_room<wtype>(p_r + 1);
    S_words = aligned_room<wtype>(p_r + 4);
    // A plan asks the tables for sizes only: transforms need their twiddles, which come after planning.
    BufferSizes sizes;
    Multiply::max_buffer_sizes<wtype>(sizes, p + 9, tds);
    array_bytes = align_bytes(sizes.array_bytes);
    part_bytes = align_bytes(sizes.least_part());
    transform_scratch_bytes = align_bytes(sizes.scratch_bytes);
    output_words = p + 2;
    upL_t above_R = std::max(Q_words + S_words, reciprocal.word_scratch);
    byte_scratch = std::max(2 * array_bytes + part_bytes + transform_scratch_bytes, reciprocal.byte_scratch);
    if (p < NEWTON_END_PRECISION) {
        const Reciprocal_BigFloatR_E<wtype> whole(p, tds);
        above_R = std::max({above_R, whole.word_scratch, aligned_room<wtype>(p + 2)});
        byte_scratch = std::max({byte_scratch, float_product_bytes<wtype>(p, tds), whole.byte_scratch});
    }
    word_scratch = R_words + above_R;
}

template <typename wtype>
void Division_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& out,
                                    const BigFloat<wtype>& N, const BigFloat<wtype>& D, wtype* words,
                                    upL_t word_count) const {
    if (ctx.tds != tds) throw InvalidParametersException(LOCATION, "Mismatching tds.");
    require_capacity(BUFFER_LOCATION, ctx.scratch_bytes, byte_scratch);
    require_capacity(BUFFER_LOCATION, word_count, word_scratch);
    if (N.is_zero()) {
        out.clear();
        return;
    }
    BigFloat<wtype> R(words, R_words);
    wtype* const above_R = words + R_words;
    if (p < NEWTON_END_PRECISION) {
        const Reciprocal_BigFloatR_E<wtype> whole(p, tds);
        whole.run(ctx, R, D, p, above_R, word_count - R_words);
        BigFloat<wtype> Q(above_R, word_count - R_words);
        Q.set_mul(p, ctx, N, R);
        out.set_BigFloat(p, Q, ctx.parallel());
        return;
    }
    status.set_status(step_text<wtype>(" R  ", p_r));
    reciprocal.run(ctx, status, R, D, p_r, above_R, word_count - R_words);
    R.truncate(p_r);
    quotient(ctx, status, out, N, D, R, above_R);
}

/// Q + R (N - D Q) with Q the upper half of N R. The storage of R takes D Q, then R (N - D Q), as R lives on
/// in its image.
template <typename wtype>
void Division_BigFloatR<wtype>::quotient(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& out,
                                         const BigFloat<wtype>& N, const BigFloat<wtype>& D,
                                         BigFloat<wtype>& R, wtype* words) const {
    using Transform = BigFloatTransformR<wtype>;
    BigFloat<wtype> Q(words, Q_words);
    BigFloat<wtype> rest(words + Q_words, S_words);
    TransformHolder<wtype> transform;
    Multiply::params(transform, p + 9, tds);
    const TransformHelper<wtype> helper(ctx, *transform, 2);
    Transform image(*transform, helper.array(1));
    const auto half = static_cast<spL_t>(p_r);

    status.set_status(step_text<wtype>(" 1M ", p));
    spL_t top = N.top() + R.top();
    Transform::mul_rr_xf(helper, Q, top - half, top, N, R, image);

    // With W the base, n the top of N and h = p_r, N - D Q stays below 9 W^(n - h), two words below the one
    // that is compared: R is 1 / D within 4 W^-h, and Q loses less than 4 W^(top - h - 2) of N R, which D
    // times becomes 4 W^(n - h), since the tops of R and D add up to 2 at most.
    const spL_t cut = std::min(N.top() - half + 3, N.top());
    BigFloat<wtype>& product = R;
    Transform::mul_rr_xx(helper, product, N.top() - static_cast<spL_t>(p), cut, D, Q);
    BigFloat<wtype> target = N;
    target.truncate_above(cut);
    NewtonStep<wtype>::residual(BUFFER_LOCATION, ctx.parallel(), rest, p_r + 3, target, product, cut,
                                N.positive);
    if (rest.is_zero()) {
        out.set_BigFloat(p, Q, ctx.parallel());
        return;
    }
    status.set_status(step_text<wtype>(" 2M ", p));
    BigFloat<wtype>& S = R;
    top = rest.top() + image.top();
    Transform::mul_rf_xf(helper, S, top - half, top, rest, image);
    out.set_add(p, ctx.parallel(), Q, S);
}

template struct Division_BigFloatR<std::uint32_t>;
template struct Division_BigFloatR<std::uint64_t>;

}  // namespace lumo
