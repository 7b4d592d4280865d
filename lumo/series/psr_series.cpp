#include "lumo/series/psr_series.h"

#include <algorithm>
#include <cstdio>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/series/block_plan.h"
#include "lumo/series/modular_check.h"
#include "lumo/series/size_text.h"

namespace lumo {
namespace {

/// Words by which the sum of what follows is kept longer than the precision it needs.
constexpr upL_t GUARD_WORDS = 4;

/// Drops low words until at most `words` are left; the hash then follows from the words that stay.
template <typename wtype>
void cut_exact(ExactFloat<wtype>& number, upL_t words, const ParallelContext& ctx) {
    if (number.L <= words) return;
    const upL_t dropped = number.L - words;
    number.T += dropped;
    number.exp += static_cast<spL_t>(dropped);
    number.L = words;
    number.update_hash(ctx);
}

template <typename wtype>
BigFloat<wtype> as_big_float(const ExactFloat<wtype>& number) {
    BigFloat<wtype> view(number.base, number.capacity);
    view.T = number.T;
    view.L = number.L;
    view.exp = number.exp;
    view.positive = number.positive;
    return view;
}

std::string percent(upL_t done, upL_t total) {
    return std::to_string(total == 0 ? 100 : done * 100 / total) + " %";
}

/// How much longer the whole sum's denominator is than the precision that is wanted.
std::string factor_text(double factor) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", factor);
    return text;
}

}  // namespace

template <typename wtype>
PSR_SeriesB<wtype>::PSR_SeriesB(const SeriesCommonP2B3<wtype>& series_, SeriesCoefficients coefficients_,
                                upL_t p_, upL_t tds_, bool reduced)
    : series(series_), coefficients(coefficients_), p(p_), tds(tds_) {
    if (coefficients.power != 1 && coefficients.power != -1)
        throw InvalidParametersException("PSR_SeriesB()", "Power must be 1 or -1.");
    if (coefficients.coefP == 0)
        throw InvalidParametersException("PSR_SeriesB()", "CoefficientP cannot be zero.");
    if (coefficients.coefD <= 0)
        throw InvalidParametersException("PSR_SeriesB()", "CoefficientD must be positive.");
    terms = std::max<upL_t>(1, series.terms_for(words_to_size<wtype>(p)));
    end = terms + 1;
    plan = make_block_plan(series, 1, end, std::max<upL_t>(reduced ? p / 2 : p, 1));

    const upL_t margin = 2 * WordTraits<wtype>::align_words;
    part_words = p + margin;
    ratio_words = 0;
    sum_words = 0;
    byte_scratch = 0;
    max_product_words = 0;
    upL_t following = 0;
    for (auto range = plan.rbegin(); range != plan.rend(); ++range) {
        const BSR_BlockB<wtype> block = block_plan(*range);
        const upL_t block_words = series.result_words(range->s, range->e);
        const upL_t merged = block_words + following + margin;
        part_words = std::max({part_words, block.result_words, following == 0 ? 0 : merged});
        ratio_words = std::max(ratio_words, block.result_words);
        const upL_t product = following == 0 ? block_words : merged;
        max_product_words = std::max(max_product_words, product + margin);
        byte_scratch =
            std::max({byte_scratch, block.byte_scratch, bsr_merge_scratch<wtype>(product + margin, tds)});
        following = std::min(tail_words(range->s), series.result_words(range->s, end));
        sum_words = std::max(sum_words, following);
    }
    part_words = align_words<wtype>(part_words);
    ratio_words = series.hyperdescent ? 0 : align_words<wtype>(ratio_words);
    sum_words = align_words<wtype>(sum_words + margin);
    byte_scratch = align_bytes(byte_scratch);
    output_words = align_words<wtype>(p + margin);
    word_scratch = 2 * sum_words + 3 * part_words + ratio_words;
}

template <typename wtype>
BSR_BlockB<wtype> PSR_SeriesB<wtype>::block_plan(Region range) const {
    const upL_t words = series.result_words(range.s, range.e);
    return BSR_BlockB<wtype>(series, range, tds, bsr_block_levels<wtype>(words, tds));
}

template <typename wtype>
upL_t PSR_SeriesB<wtype>::tail_words(upL_t a) const {
    return size_to_words<wtype>(series.remaining(a, end)) + GUARD_WORDS;
}

template <typename wtype>
void PSR_SeriesB<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& numerator,
                             BigFloat<wtype>& denominator, wtype* words, upL_t word_count,
                             SeriesObserver<wtype>* observer) const {
    require_capacity("PSR_SeriesB::run()", numerator.capacity, output_words);
    require_capacity("PSR_SeriesB::run()", denominator.capacity, output_words);
    require_capacity("PSR_SeriesB::run()", word_count, word_scratch);
    require_capacity("PSR_SeriesB::run()", ctx.scratch_bytes, byte_scratch);
    Parts<wtype> result;
    {
        const double expansion = (series.block_size(1, end) / words_to_size<wtype>(p)).hi;
        StatusSection section(
            status,
            {{'G', "Series CommonP2B3...  "}, {'Y', Console::format_commas(terms)}, {'w', " terms  "}});
        // Told once: a row that is redrawn needs its width for what changes.
        {
            const StatusSection factor(
                status, {{'w', "(Expansion Factor = "}, {'Y', factor_text(expansion)}, {'w', ")  "}});
        }
        sum(ctx, status, result, words, word_count, observer);
    }
    StatusSection section(status, {{'G', "Finishing Series...  "}});
    lmb_Verify_BSR<wtype>(1, end, {&result.P, &result.Q}, ctx.parallel());
    finish(ctx, status, result, numerator, denominator, words + 2 * sum_words, word_count - 2 * sum_words);
}

template <typename wtype>
void PSR_SeriesB<wtype>::sum(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& result,
                             wtype* words, upL_t word_count, SeriesObserver<wtype>* observer) const {
    LinearWordBuffer<wtype> buffer(words, word_count);
    const auto cut_object = [&](upL_t n) { return ExactFloat<wtype>(buffer.cut_from_bottom(n), n); };
    result.P = cut_object(sum_words);
    result.Q = cut_object(sum_words);
    result.need_R = false;
    const Parts<wtype> storage{cut_object(part_words), cut_object(part_words), cut_object(ratio_words), true};
    const ExactFloat<wtype> T = cut_object(part_words);

    const ParallelContext threads = ctx.parallel();
    for (upL_t i = plan.size(); i-- != 0;) {
        const Region range = plan[i];
        const bool last = i + 1 == plan.size();
        Parts<wtype> block = storage;
        block.need_R = !last && !series.hyperdescent;
        const upL_t done = end - range.e;
        StatusSection section(status, {{'w', "Summing: "},
                                       {'Y', percent(done, terms)},
                                       {'w', "  block " + std::to_string(plan.size() - i) + " / " +
                                                 std::to_string(plan.size()) + "  "}});
        block_plan(range).run(ctx, status, block, T);
        if (observer) observer->block_done(range, block);
        if (!block.need_R)
            lmb_Verify_BSR<wtype>(range.s, range.e, {&block.P, &block.Q}, threads);
        else
            lmb_Verify_BSR<wtype>(range.s, range.e, {&block.P, &block.Q, &block.R}, threads);
        if (!last) {
            widen(block.P, storage.P);
            widen(block.Q, storage.Q);
            bsr_merge(ctx, series, block, result, T);
            if (observer) observer->sum_done(Region(range.s, end), block);
            lmb_Verify_BSR<wtype>(range.s, end, {&block.P, &block.Q}, threads, BSRStep::merge);
        }
        cut_exact(block.P, tail_words(range.s), threads);
        cut_exact(block.Q, tail_words(range.s), threads);
        result.P.set_ExactFloat(block.P, threads);
        result.Q.set_ExactFloat(block.Q, threads);
    }
}

template <typename wtype>
void PSR_SeriesB<wtype>::finish(const MultiplyContext& ctx, StatusNode&, const Parts<wtype>& sum,
                                BigFloat<wtype>& numerator, BigFloat<wtype>& denominator, wtype* words,
                                upL_t word_count) const {
    const ParallelContext threads = ctx.parallel();
    LinearWordBuffer<wtype> buffer(words, word_count);
    const upL_t precision = p + 2;
    const BigFloat<wtype> P = as_big_float(sum.P);
    const BigFloat<wtype> Q = as_big_float(sum.Q);
    BigFloat<wtype>& over = coefficients.power == 1 ? numerator : denominator;
    BigFloat<wtype>& under = coefficients.power == 1 ? denominator : numerator;
    if (coefficients.coefQ == 0) {
        over.set_mul_sL(precision, P, coefficients.coefP, threads);
    } else {
        BigFloat<wtype> A(buffer.cut_from_bottom(part_words), part_words);
        BigFloat<wtype> B(buffer.cut_from_bottom(part_words), part_words);
        A.set_mul_sL(precision, P, coefficients.coefP, threads);
        B.set_mul_sL(precision, Q, coefficients.coefQ, threads);
        over.set_add(precision, threads, A, B);
    }
    under.set_mul_sL(precision, Q, coefficients.coefD, threads);
}

template class PSR_SeriesB<std::uint32_t>;
template class PSR_SeriesB<std::uint64_t>;

}  // namespace lumo
