#include "lumo/functions/agm.h"

#include <algorithm>
#include <cmath>
#include <numbers>

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

/// Whether numbers that agree down to these tops have a mean that is right to w words: of numbers that differ
/// by d, it is off by less than d^2 / 8.
bool agree(spL_t top, spL_t top_of_difference, upL_t w) {
    return 2 * (top - top_of_difference) >= static_cast<spL_t>(w) + 2;
}

/// Follows the logarithms of a, b and |a - b| through the rounds to come. They are counted from the word at
/// `base`: of exponents near 2^63 a double keeps too little.
template <typename wtype>
class RoundsAhead {
 public:
    RoundsAhead(const BigFloat<wtype>& a, const BigFloat<wtype>& b, const BigFloat<wtype>& difference)
        : base(std::max(a.top(), b.top())), log_a(log_of(a)), log_b(log_of(b)), log_d(log_of(difference)) {}

    /// Until both agree(). Rounding may misplace a number that is near a power of the base.
    int count(upL_t w) {
        int rounds = 0;
        for (; !agree(top_of(log_a), top_of(log_d), w); ++rounds) next();
        return rounds;
    }

 private:
    /// What a word weighs.
    static double word() { return WordTraits<wtype>::bits * std::numbers::ln2; }
    double log_of(const BigFloat<wtype>& x) const {
        spL_t e;
        const double m = x.get_double(e);
        return std::log(std::fabs(m)) + static_cast<double>(e - base) * word();
    }
    static spL_t top_of(double log) { return static_cast<spL_t>(std::floor(log / word())) + 1; }

    /// The means of a and b differ by (sqrt(a) - sqrt(b))^2 / 2 = d^2 / (2 (sqrt(a) + sqrt(b))^2).
    void next() {
        const double larger = std::max(log_a, log_b);
        const double ratio = -std::fabs(log_a - log_b);
        log_b = (log_a + log_b) / 2;
        log_a = larger + std::log1p(std::exp(ratio)) - std::numbers::ln2;
        log_d = 2 * log_d - std::numbers::ln2 - larger - 2 * std::log1p(std::exp(ratio / 2));
    }

    spL_t base;
    double log_a, log_b, log_d;
};

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
    if (a.is_zero() || b.is_zero()) return T.clear();
    if (a.sign() < 0 || b.sign() < 0)
        throw InvalidParametersException(LOCATION_2, "One of the inputs is negative.");
    const StatusSection title(status, {{'G', "AGM(a,b)  "}});
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
    // The texts of steps replace each other, and what stands before them stays.
    const auto steps = [&] { return StatusSection(status, {{'T', ""}}); };
    const auto tell = [&](const char* tag) { status.set_status(step_text<wtype>(tag, w)); };
    int rounds = 0;
    for (int round = 1;; ++round) {
        BigFloat<wtype>& D = spare;
        {
            const StatusSection level = steps();
            tell(" 0A ");
            D.set_sub(w, threads, a, b);
        }
        if (D.is_zero() || agree(a.top(), D.top(), w)) break;
        if (round == 1) rounds = RoundsAhead<wtype>(a, b, D).count(w);
        const StatusSection section(
            status, {{'w', "AGM: "}, {'Y', std::to_string(round) + " (" + std::to_string(rounds) + ")"}});
        const StatusSection level = steps();
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
    const StatusSection level = steps();
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
    const StatusSection title(status, {{'G', "AGM(1,x)  "}});
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
        const StatusSection level(status, {{'T', ""}});
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
