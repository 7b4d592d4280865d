#include "lumo/functions/newton_levels.h"
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

/// S := (distance from one of x R) R.
template <typename wtype>
Estimate correction(const MultiplyContext& ctx, BigFloat<wtype>& S, BigFloat<wtype>& T,
                    const BigFloat<wtype>& x, const BigFloat<wtype>& R, upL_t p, upL_t q) {
    T.set_mul(p, ctx, x, R);
    const Estimate estimate = NewtonStep<wtype>::distance_from_one(LOCATION, T, q);
    if (estimate != Estimate::exact) S.set_mul(q, ctx, T, R);
    return estimate;
}

}  // namespace

template <typename wtype>
Reciprocal_BigFloatR_E<wtype>::Reciprocal_BigFloatR_E(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)) {
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
    newton_end(
        LOCATION, 3, T, precision, words, word_count, [&](BigFloat<wtype>& R) { seed(R, x); },
        [&](BigFloat<wtype>& S, BigFloat<wtype>& E, const BigFloat<wtype>& R, upL_t to, upL_t from) {
            return correction(ctx, S, E, x, R, to, from);
        });
}

template struct Reciprocal_BigFloatR_E<std::uint32_t>;
template struct Reciprocal_BigFloatR_E<std::uint64_t>;

}  // namespace lumo
