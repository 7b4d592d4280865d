#include "lumo/functions/inverse_sqrt_end.h"

#include <cmath>

#include "lumo/functions/newton_levels.h"

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

/// S := R (1 - x R^2) / 2 in magnitude.
template <typename wtype>
Estimate correction(const MultiplyContext& ctx, BigFloat<wtype>& S, BigFloat<wtype>& T,
                    const BigFloat<wtype>& x, const BigFloat<wtype>& R, upL_t p, upL_t q) {
    using Step = NewtonStep<wtype>;
    S.set_sqr(p, ctx, R);
    T.set_mul(p, ctx, S, x);
    const Estimate estimate = Step::distance_from_one(LOCATION, T, q);
    if (estimate == Estimate::exact) return estimate;
    Step::halve({}, T);
    S.set_mul(q, ctx, T, R);
    return estimate;
}

}  // namespace

template <typename wtype>
InvsqrtFloat_BigFloatR_E<wtype>::InvsqrtFloat_BigFloatR_E(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)) {
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
    newton_end(
        LOCATION, 4, T, precision, words, word_count, [&](BigFloat<wtype>& R) { seed(R, x); },
        [&](BigFloat<wtype>& S, BigFloat<wtype>& E, const BigFloat<wtype>& R, upL_t to, upL_t from) {
            return correction(ctx, S, E, x, R, to, from);
        });
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
