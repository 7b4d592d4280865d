#include "lumo/functions/inverse_nth_root.h"
#include "lumo/functions/newton_step.h"
#include "lumo/functions/plan_sizes.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "InvNthRootFloat_BigFloatR_E::run()";

/// Up to this precision one step from the seed of about 98 bits suffices for every n: the error of a step is
/// (n + 1) / 2 times the square of the last one, and n may use up 32 bits, more than an approximation of a
/// word or two could spare.
template <typename wtype>
constexpr upL_t SEED_REACH = 128 / WordTraits<wtype>::bits;

/// Storage for a double-double.
constexpr upL_t SEED_WORDS = 5;

/// With -e = q n + r the result is 2^(W q) exp((r W ln 2 - ln m) / n), whose exponential is near one word.
template <typename wtype>
void seed(BigFloat<wtype>& T, const BigFloat<wtype>& x, std::uint32_t n) {
    if (x.is_zero() || n == 0) throw ArithmeticException(LOCATION, "Divide by zero.");
    if (x.sign() < 0) throw ArithmeticException(LOCATION, "Nth root of negative number.");
    spL_t e;
    const DoubleDouble m = x.get_double_double(e);
    const auto degree = static_cast<spL_t>(n);
    const DoubleDouble bits(static_cast<double>(-e % degree) * WordTraits<wtype>::bits);
    const DoubleDouble logarithm = bits * LN2_PAIR - log(m);
    T.set_double_double(exp(logarithm / DoubleDouble(static_cast<double>(n))), -e / degree);
}

}  // namespace

template <typename wtype>
InvNthRootFloat_BigFloatR_E<wtype>::InvNthRootFloat_BigFloatR_E(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), power(p_, tds_) {
    output_words = std::max(p + 4, SEED_WORDS);
    word_scratch = align_words<wtype>(std::max(p + 2, SEED_WORDS)) +
                   std::max(aligned_room<wtype>(p + 4), power.word_scratch);
    byte_scratch = std::max(float_product_bytes<wtype>(p, tds), power.byte_scratch);
}

template <typename wtype>
void InvNthRootFloat_BigFloatR_E<wtype>::run(const MultiplyContext& ctx, BigFloat<wtype>& T,
                                             const BigFloat<wtype>& x, std::uint32_t n, upL_t precision,
                                             wtype* words, upL_t word_count) const {
    using Step = NewtonStep<wtype>;
    Step::require_plan(LOCATION, ctx.tds, tds, precision, p);
    if (precision == 0) {
        seed(T, x, n);
        return;
    }
    require_capacity(LOCATION, T.capacity, std::max(precision + 4, SEED_WORDS));
    const bool from_seed = precision <= SEED_REACH<wtype>;
    const upL_t q = from_seed ? 0 : precision <= 8 ? precision - 1 : (precision >> 1) + 3;
    run(ctx, T, x, n, q, words, word_count);

    LinearWordBuffer<wtype> buffer(words, word_count);
    const upL_t R_words = align_words<wtype>(std::max(q + 2, SEED_WORDS));
    BigFloat<wtype> R(buffer.cut_from_bottom(R_words), R_words);
    R.set_BigFloat(from_seed ? SEED_REACH<wtype> : q, T);
    power.run(ctx, nullptr, T, R, upL_t(n) + 1, precision, buffer.data(), buffer.size());
    BigFloat<wtype> B(buffer.data(), buffer.size());
    B.set_mul(precision, ctx, T, x);
    T.set_sub(precision, {}, B, R);
    if (T.is_zero()) {
        T.set_BigFloat(precision, R);
        return;
    }
    Step::divide_by_word({}, B, precision, T, n);
    T.set_sub(precision, {}, R, B);
}

template struct InvNthRootFloat_BigFloatR_E<std::uint32_t>;
template struct InvNthRootFloat_BigFloatR_E<std::uint64_t>;

}  // namespace lumo
