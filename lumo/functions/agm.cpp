#include "lumo/functions/agm.h"

#include <bit>
#include <cmath>

#include "lumo/functions/newton_step.h"
#include "lumo/functions/plan_sizes.h"
#include "lumo/functions/step_text.h"

namespace lumo {

namespace {

constexpr const char* LOCATION_1 = "AGM1_BigFloatR::run()";
constexpr const char* LOCATION_2 = "AGM2_BigFloatR::run()";

/// Words beyond the precision, against the errors of all rounds.
constexpr upL_t GUARD_WORDS = 2;

/// Half of x, without a shift of bits.
template <typename wtype>
void halve(BigFloat<wtype>& x, const ParallelContext& ctx) {
    if (x.is_zero()) return;
    --x.exp;
    x.mul_uW(wtype(1) << (WordTraits<wtype>::bits - 1), ctx);
}

template <typename wtype>
double natural_log(const BigFloat<wtype>& x) {
    spL_t e;
    const double m = x.get_double(e);
    return std::log(std::fabs(m)) + static_cast<double>(e) * WordTraits<wtype>::bits * std::log(2.0);
}

/// Rounds still to come: those that bring the ratio near one, and those that double the agreement.
template <typename wtype>
int rounds_left(const BigFloat<wtype>& a, const BigFloat<wtype>& b, const BigFloat<wtype>& difference,
                upL_t p) {
    const double target = static_cast<double>(p) * WordTraits<wtype>::bits * std::log(2.0) / 2;
    double apart = std::fabs(natural_log(a) - natural_log(b));
    int rounds = 0;
    for (; apart > 1; apart /= 2) ++rounds;
    const double agreement = natural_log(a) - natural_log(difference);
    for (double reached = std::max(agreement, 2.0); reached < target; reached *= 2) ++rounds;
    return rounds;
}

}  // namespace

template <typename wtype>
AGM2_BigFloatR<wtype>::AGM2_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), root(p_ + GUARD_WORDS, tds_) {
    number_words = align_words<wtype>(root.output_words);
    output_words = p + GUARD_WORDS + 3;
    word_scratch = 4 * number_words + root.word_scratch;
    byte_scratch = std::max(float_product_bytes<wtype>(p + GUARD_WORDS, tds), root.byte_scratch);
}

template <typename wtype>
void AGM2_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                const BigFloat<wtype>& a, const BigFloat<wtype>& b, upL_t precision,
                                wtype* words, upL_t word_count) const {
    NewtonStep<wtype>::require_plan(LOCATION_2, ctx.tds, tds, precision, p);
    require_capacity(LOCATION_2, T.capacity, output_words);
    require_capacity(LOCATION_2, word_count, word_scratch);
    require_capacity(LOCATION_2, ctx.scratch_bytes, byte_scratch);
    if (a.sign() < 0 || b.sign() < 0)
        throw InvalidParametersException(LOCATION_2, "One of the inputs is negative.");
    if (a.is_zero() || b.is_zero()) return T.clear();
    LinearWordBuffer<wtype> buffer(words, word_count);
    const auto number = [&] { return BigFloat<wtype>(buffer.cut_from_bottom(number_words), number_words); };
    BigFloat<wtype> x = number();
    BigFloat<wtype> y = number();
    x.set_BigFloat(precision + GUARD_WORDS, a, ctx.parallel());
    y.set_BigFloat(precision + GUARD_WORDS, b, ctx.parallel());
    const BigFloat<wtype> M = number();
    const BigFloat<wtype> spare = number();
    iterate(ctx, status, T, x, y, M, spare, precision, buffer.data(), buffer.size());
}

template <typename wtype>
void AGM2_BigFloatR<wtype>::iterate(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                    BigFloat<wtype> a, BigFloat<wtype> b, BigFloat<wtype> M,
                                    BigFloat<wtype> spare, upL_t precision, wtype* words,
                                    upL_t word_count) const {
    const upL_t w = precision + GUARD_WORDS;
    const ParallelContext threads = ctx.parallel();
    const auto tell = [&](const char* tag) { status.set_status(step_text<wtype>(tag, w)); };
    int rounds = -1;
    for (int round = 1;; ++round) {
        BigFloat<wtype>& D = spare;
        D.set_sub(w, threads, a, b);
        // Of numbers that differ by d, the mean is off by less than d^2 / 8.
        if (D.is_zero() || 2 * (a.top() - D.top()) >= static_cast<spL_t>(w) + 2) break;
        if (rounds < 0) rounds = round + rounds_left(a, b, D, w);
        const StatusSection section(
            status, {{'w', "AGM: "}, {'Y', std::to_string(round) + " (" + std::to_string(rounds) + ")"}});
        tell(" 1A ");
        BigFloat<wtype>& S = spare;
        S.set_add(w, threads, a, b);
        tell(" 2M ");
        M.set_mul(w, ctx, a, b);
        tell(" 3Q ");
        BigFloat<wtype>& I = b;
        root.run(ctx, status, I, M, w, words, word_count);
        tell(" 4M ");
        a.set_mul(w, ctx, M, I);
        tell(" 5S ");
        halve(S, threads);
        // a holds the geometric mean now, the spare the arithmetic one; I's buffer is free.
        std::swap(a, b);
        std::swap(a, spare);
    }
    const StatusSection section(status, {{'P', "AGM: Final"}});
    tell(" 0A ");
    T.set_add(w, threads, a, b);
    tell(" 1S ");
    halve(T, threads);
    T.truncate(precision);
}

template <typename wtype>
AGM1_BigFloatR<wtype>::AGM1_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), mean(p_, tds_) {
    output_words = mean.output_words;
    word_scratch = mean.word_scratch;
    byte_scratch = mean.byte_scratch;
}

template <typename wtype>
void AGM1_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                const BigFloat<wtype>& x, upL_t precision, wtype* words,
                                upL_t word_count) const {
    NewtonStep<wtype>::require_plan(LOCATION_1, ctx.tds, tds, precision, p);
    require_capacity(LOCATION_1, T.capacity, output_words);
    require_capacity(LOCATION_1, word_count, word_scratch);
    require_capacity(LOCATION_1, ctx.scratch_bytes, byte_scratch);
    if (x.sign() < 0) throw InvalidParametersException(LOCATION_1, "AGM of negative number.");
    if (x.is_zero()) return T.clear();
    const upL_t w = precision + GUARD_WORDS;
    LinearWordBuffer<wtype> buffer(words, word_count);
    const auto number = [&] {
        return BigFloat<wtype>(buffer.cut_from_bottom(mean.number_words), mean.number_words);
    };
    BigFloat<wtype> a = number();
    BigFloat<wtype> b = number();
    BigFloat<wtype> I = number();
    const BigFloat<wtype> spare = number();
    {
        const StatusSection section(status, {{'P', "(start)"}});
        status.set_status(step_text<wtype>(" 0A ", w));
        wtype one_word;
        BigFloat<wtype> one(&one_word, 1);
        one.set_word(1);
        a.set_add(w, ctx.parallel(), one, x);
        halve(a, ctx.parallel());
        status.set_status(step_text<wtype>(" 1Q ", w));
        mean.root.run(ctx, status, I, x, w, buffer.data(), buffer.size());
        status.set_status(step_text<wtype>(" 2M ", w));
        b.set_mul(w, ctx, x, I);
    }
    mean.iterate(ctx, status, T, a, b, I, spare, precision, buffer.data(), buffer.size());
}

template struct AGM2_BigFloatR<std::uint32_t>;
template struct AGM2_BigFloatR<std::uint64_t>;
template struct AGM1_BigFloatR<std::uint32_t>;
template struct AGM1_BigFloatR<std::uint64_t>;

}  // namespace lumo
