#include "lumo/functions/log_agm.h"

#include "lumo/functions/division_status.h"
#include "lumo/functions/plan_sizes.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "Log_AGM_BigFloatR::run()";

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
    word_scratch = 2 * number_words + std::max(mean.word_scratch, number_words + division.word_scratch);
    byte_scratch = std::max(
        {mean.byte_scratch, division.byte_scratch, float_product_bytes<wtype>(p + GUARD_WORDS, tds)});
}

template <typename wtype>
void Log_AGM_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                   const BigFloat<wtype>& x, const BigFloat<wtype>& pi,
                                   const BigFloat<wtype>& ln2, wtype* words, upL_t word_count) const {
    require_capacity(LOCATION, T.capacity, output_words);
    require_capacity(LOCATION, word_count, word_scratch);
    require_capacity(LOCATION, ctx.scratch_bytes, byte_scratch);
    if (x.is_zero()) throw ArithmeticException(LOCATION, "Log(0)");
    if (x.sign() < 0) throw InvalidParametersException(LOCATION, "Log of a negative number is complex.");
    const upL_t w = p + GUARD_WORDS;
    const spL_t s = static_cast<spL_t>((w + 2) >> 1) + 2 - x.top();
    if (s > SHIFT_LIMIT || s < -SHIFT_LIMIT)
        throw LimitExceededException(LOCATION, "Exponent of the argument.", SHIFT_LIMIT,
                                     static_cast<upL_t>(s < 0 ? -s : s));
    const spL_t m = static_cast<spL_t>(WordTraits<wtype>::bits) * s + 3;

    const ParallelContext threads = ctx.parallel();
    LinearWordBuffer<wtype> buffer(words, word_count);
    const auto number = [&] { return BigFloat<wtype>(buffer.cut_from_bottom(number_words), number_words); };
    BigFloat<wtype> Y = number();
    BigFloat<wtype> A = number();
    Y.set_mul_uW(w, x, 2, threads);
    Y.exp += s;
    {
        const StatusSection section(status, {{'G', "AGM(1,x)  "}});
        mean.run(ctx, status, A, Y, w, buffer.data(), buffer.size());
    }
    BigFloat<wtype> quotient = number();
    {
        const LargeDivisionStatus section(status);
        division.run(ctx, status, quotient, Y, A, buffer.data(), buffer.size());
    }
    {
        const StatusSection section(status, {{'G', "Large Multiply...  "}});
        A.set_mul(w, ctx, pi, quotient);
    }
    const StatusSection section(status, {{'G', "Finishing Log(x)...  "}});
    // Half of it: the formula divides by 2 AGM(1, Y).
    --A.exp;
    A.mul_uW(wtype(1) << (WordTraits<wtype>::bits - 1), threads);
    Y.set_mul_sL(w, ln2, m, threads);
    T.set_sub(p + 2, threads, A, Y);
}

template struct Log_AGM_BigFloatR<std::uint32_t>;
template struct Log_AGM_BigFloatR<std::uint64_t>;

}  // namespace lumo
