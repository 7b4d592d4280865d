#include "lumo/functions/newton_step.h"
#include "lumo/functions/plan_sizes.h"
#include "lumo/functions/reciprocal.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "Reciprocal_BigFloatR_E::run()";

template <typename wtype>
void seed(BigFloat<wtype>& T, const BigFloat<wtype>& x) {
    if (x.is_zero()) throw ArithmeticException(LOCATION, "Divide by zero.");
    spL_t e;
    const double m = x.get_double(e);
    T.set_double(1 / m, -e);
}

template <typename wtype>
void iterate(const MultiplyContext& ctx, BigFloat<wtype>& T, const BigFloat<wtype>& x, upL_t p, wtype* words,
             upL_t word_count) {
    using Step = NewtonStep<wtype>;
    if (p == 0) {
        seed(T, x);
        return;
    }
    require_capacity(LOCATION, T.capacity, p + 3);
    const upL_t q = Step::child_precision(p);
    iterate(ctx, T, x, q, words, word_count);

    LinearWordBuffer<wtype> buffer(words, word_count);
    BigFloat<wtype> R(buffer.cut_from_bottom(q + 3), q + 3);
    BigFloat<wtype> S(buffer.cut_from_bottom(q + 2), q + 2);
    R.set_BigFloat(q, T);
    T.set_mul(p, ctx, x, R);
    const Estimate estimate = Step::distance_from_one(LOCATION, T, q);
    if (estimate != Estimate::exact) S.set_mul(q, ctx, T, R);
    Step::correct({}, T, p, R, S, estimate);
}

}  // namespace

template <typename wtype>
Reciprocal_BigFloatR_E<wtype>::Reciprocal_BigFloatR_E(upL_t p_, upL_t tds_) : p(p_), tds(tds_) {
    const upL_t q = p == 0 ? 0 : NewtonStep<wtype>::child_precision(p);
    output_words = p + 3;
    word_scratch = std::max(aligned_room<wtype>(p + 5), 2 * q + 5);
    byte_scratch = std::max(product_bytes<wtype>(p + 8, tds), float_product_bytes<wtype>(p, tds));
}

template <typename wtype>
void Reciprocal_BigFloatR_E<wtype>::run(const MultiplyContext& ctx, BigFloat<wtype>& T,
                                        const BigFloat<wtype>& x, upL_t precision, wtype* words,
                                        upL_t word_count) const {
    NewtonStep<wtype>::require_plan(LOCATION, ctx.tds, tds, precision, p);
    iterate(ctx, T, x, precision, words, word_count);
}

template struct Reciprocal_BigFloatR_E<std::uint32_t>;
template struct Reciprocal_BigFloatR_E<std::uint64_t>;

}  // namespace lumo
