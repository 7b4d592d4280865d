#include "lumo/functions/log_agm.h"

#include "lumo/functions/division_status.h"
#include "lumo/functions/plan_sizes.h"

namespace lumo {

namespace {

/// Word shifts whose bits, and three more, fit 64 signed bits.
constexpr spL_t SHIFT_LIMIT = 0x1ffffffffffffff;

/// Words beyond the precision: m ln 2, of which ln x is a remainder, takes one of them.
constexpr upL_t GUARD_WORDS = 2;

}  // namespace

template <typename wtype>
Log_AGM_BigFloatR<wtype>::Log_AGM_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), mean(p_ + GUARD_WORDS, tds_), division(p_ + GUARD_WORDS, tds_) {
    output_words = p + 6;
    number_words =
        align_words<wtype>(std::max({mean.output_words, division.output_words, p + GUARD_WORDS + 8}));
    quotient_scratch = number_words + std::max(mean.word_scratch, division.word_scratch);
    word_scratch = number_words + quotient_scratch;
    byte_scratch = std::max(
        {mean.byte_scratch, division.byte_scratch, float_product_bytes<wtype>(p + GUARD_WORDS, tds)});
}

template <typename wtype>
void Log_AGM_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                   const BigFloat<wtype>& x, const BigFloat<wtype>& pi,
                                   const BigFloat<wtype>& ln2, wtype* words, upL_t word_count) const {
    constexpr const char* LOCATION = "Log_AGM_BigFloatR::run()";
    require_capacity(LOCATION, T.capacity, output_words);
    require_capacity(LOCATION, word_count, word_scratch);
    require_capacity(LOCATION, ctx.scratch_bytes, byte_scratch);
    LinearWordBuffer<wtype> buffer(words, word_count);
    BigFloat<wtype> Q(buffer.cut_from_bottom(number_words), number_words);
    const spL_t m = quotient(LOCATION, ctx, status, Q, x, buffer.data(), buffer.size());
    BigFloat<wtype> A(buffer.cut_from_bottom(number_words), number_words);
    times_half_pi(ctx, status, A, Q, pi);
    finish(ctx, status, T, A, m, ln2, Q);
}

template <typename wtype>
spL_t Log_AGM_BigFloatR<wtype>::quotient(const char* location, const MultiplyContext& ctx, StatusNode& status,
                                         BigFloat<wtype>& Q, const BigFloat<wtype>& x, wtype* words,
                                         upL_t word_count) const {
    if (x.is_zero()) throw ArithmeticException(location, "Log(0)");
    if (x.sign() < 0) throw InvalidParametersException(location, "Log of a negative number is complex.");
    const upL_t w = p + GUARD_WORDS;
    const spL_t s = static_cast<spL_t>((w + 2) >> 1) + 2 - x.top();
    if (s > SHIFT_LIMIT || s < -SHIFT_LIMIT)
        throw LimitExceededException(location, "Exponent of the argument.", SHIFT_LIMIT,
                                     static_cast<upL_t>(s < 0 ? -s : s));
    LinearWordBuffer<wtype> buffer(words, word_count);
    BigFloat<wtype> A(buffer.cut_from_bottom(number_words), number_words);
    BigFloat<wtype>& Y = Q;
    Y.set_mul_uW(w, x, 2, ctx.parallel());
    Y.exp += s;
    mean.run(ctx, status, A, Y, w, buffer.data(), buffer.size());
    const LargeDivisionStatus section(status);
    division.run(ctx, status, Q, Y, A, buffer.data(), buffer.size());
    return static_cast<spL_t>(WordTraits<wtype>::bits) * s + 3;
}

template <typename wtype>
void Log_AGM_BigFloatR<wtype>::times_half_pi(const MultiplyContext& ctx, StatusNode& status,
                                             BigFloat<wtype>& A, const BigFloat<wtype>& Q,
                                             const BigFloat<wtype>& pi) const {
    const StatusSection section(status, {{'G', "Large Multiply...  "}});
    A.set_mul(p + GUARD_WORDS, ctx, pi, Q);
    --A.exp;
    A.mul_uW(wtype(1) << (WordTraits<wtype>::bits - 1), ctx.parallel());
}

template <typename wtype>
void Log_AGM_BigFloatR<wtype>::finish(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                      const BigFloat<wtype>& A, spL_t m, const BigFloat<wtype>& ln2,
                                      BigFloat<wtype>& U) const {
    const StatusSection section(status, {{'G', "Finishing Log(x)...  "}});
    U.set_mul_sL(p + GUARD_WORDS, ln2, m, ctx.parallel());
    T.set_sub(p + 2, ctx.parallel(), A, U);
}

template struct Log_AGM_BigFloatR<std::uint32_t>;
template struct Log_AGM_BigFloatR<std::uint64_t>;

}  // namespace lumo
