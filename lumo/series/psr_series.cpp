#include "lumo/series/psr_series.h"

#include <algorithm>
#include <cstdio>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/series/binary_bbp/block_bbp.h"
#include "lumo/series/block_plan.h"
#include "lumo/series/modular_check.h"
#include "lumo/series/shared_factor.h"
#include "lumo/series/size_text.h"
#include "lumo/series/sum_progress.h"

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

/// How much longer the whole sum's denominator is than the precision that is wanted.
std::string factor_text(double factor) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", factor);
    return text;
}

}  // namespace

template <typename wtype>
template <typename Use>
auto PSR_SeriesB<wtype>::with_block(const SeriesCommonP2B3<wtype>& summed, Region range, Use use) const {
    const upL_t levels = bsr_block_levels<wtype>(summed.result_words(range.s, range.e), tds);
    if (const BinaryBBP<wtype>* bbp = summed.binary_bbp())
        return use(BlockBBP<wtype>(*bbp, range, tds, levels));
    return use(BSR_BlockB<wtype>(summed, range, tds, levels));
}

template <typename wtype>
PSR_SeriesB<wtype>::PSR_SeriesB(const SeriesCommonP2B3<wtype>& series_, SeriesCoefficients coefficients_,
                                upL_t p_, upL_t tds_, bool short_blocks)
    : series(series_), coefficients(coefficients_), p(p_), tds(tds_) {
    if (coefficients.power != 1 && coefficients.power != -1)
        throw InvalidParametersException("PSR_SeriesB()", "Power must be 1 or -1.");
    if (coefficients.coefP == 0)
        throw InvalidParametersException("PSR_SeriesB()", "CoefficientP cannot be zero.");
    if (coefficients.coefD <= 0)
        throw InvalidParametersException("PSR_SeriesB()", "CoefficientD must be positive.");
    terms = std::max<upL_t>(1, series.terms_for(words_to_size<wtype>(p)));
    end = terms + 1;
    if (ReducedSeries<wtype>::worthwhile(series, end, tds)) reduced.emplace(series, end);
    plan = make_block_plan(sized(), 1, end, std::max<upL_t>(short_blocks ? p / 2 : p, 1));

    const upL_t margin = 2 * WordTraits<wtype>::align_words;
    output_words = align_words<wtype>(p + margin);
    upL_t part = output_words, block_words = 0, sum_words = 0, following = 0;
    byte_scratch = 0;
    max_product_words = 0;
    for (auto range = plan.rbegin(); range != plan.rend(); ++range) {
        const upL_t product = sized().result_words(range->s, range->e) + following + margin;
        with_block(sized(), *range, [&](const auto& block) {
            block_words = std::max(block_words, block.result_words);
            byte_scratch = std::max(byte_scratch, block.byte_scratch);
        });
        part = std::max({part, block_words, product});
        max_product_words = std::max(max_product_words, product);
        byte_scratch = std::max(byte_scratch, bsr_merge_least_scratch<wtype>(product, tds));
        sum_words = std::max(sum_words, following == 0 ? 0 : following + margin);
        following = std::min(tail_words(range->s), sized().result_words(range->s, end));
    }
    byte_scratch = align_bytes(byte_scratch);
    room = Room(part, block_words, sum_words, output_words, !series.hyperdescent);
    word_scratch = room.end;
    if (reduced) {
        byte_scratch = std::max(byte_scratch, align_bytes(reduced->factor().make_bytes()));
        word_scratch += align_words<wtype>(reduced->factor().image_bytes() / sizeof(wtype));
    }
}

template <typename wtype>
PSR_SeriesB<wtype>::Room::Room(upL_t part_, upL_t block_, upL_t sum_, upL_t output, bool has_R)
    : part(align_words<wtype>(part_)), block(align_words<wtype>(block_)), sum(align_words<wtype>(sum_)) {
    const upL_t few = align_words<wtype>(SMALL_WORDS<wtype> + 2 * WordTraits<wtype>::align_words);
    block_T = part + block;
    R = std::max(2 * part, block_T + block);
    right_P = R + (has_R ? block : 0);
    right_Q = std::max(right_P + sum, R + part);
    small_T = std::max(right_Q + sum, R + 2 * output);
    end = small_T + few;
}

template <typename wtype>
upL_t PSR_SeriesB<wtype>::tail_words(upL_t a) const {
    return size_to_words<wtype>(series.remaining(a, end)) + GUARD_WORDS;
}

template <typename wtype>
void PSR_SeriesB<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& numerator,
                             BigFloat<wtype>& denominator, wtype* words, upL_t word_count,
                             SeriesObserver<wtype>* observer) const {
    require_capacity("PSR_SeriesB::run()", word_count, word_scratch);
    require_capacity("PSR_SeriesB::run()", ctx.scratch_bytes, byte_scratch);
    Parts<wtype> result;
    {
        const double expansion = (sized().block_size(1, end) / words_to_size<wtype>(p)).hi;
        const StatusSection section(status, {{'G', "Series CommonP2B3...  "}});
        // Told once: a row that is redrawn needs its width for what changes.
        {
            const StatusSection count(status, {{'Y', Console::format_commas(terms)},
                                               {'w', " terms  (Expansion Factor = "},
                                               {'Y', factor_text(expansion)},
                                               {'w', ")  "}});
        }
        sum(ctx, status, result, words, observer);
    }
    StatusSection section(status, {{'G', "Finishing Series...  "}});
    finish(ctx, result, numerator, denominator, words);
}

template <typename wtype>
void PSR_SeriesB<wtype>::sum(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& result,
                             wtype* words, SeriesObserver<wtype>* observer) const {
    const auto object = [words](upL_t at, upL_t n) { return ExactFloat<wtype>(words + at, n); };
    const Parts<wtype> whole{object(0, room.part), object(room.part, room.R - room.part),
                             object(room.R, room.right_P - room.R), false};
    result = {object(room.right_P, room.right_Q - room.right_P), object(room.right_Q, room.sum), {}, false};

    std::optional<ReducedSeries<wtype>> made = reduced;
    if (made) made->make(ctx, words + room.end);
    const SeriesCommonP2B3<wtype>& summed = made ? *made : series;

    const ParallelContext threads = ctx.parallel();
    const SumProgress progress(plan);
    for (upL_t i = plan.size(); i-- != 0;) {
        const Region range = plan[i];
        const bool last = i + 1 == plan.size();
        Parts<wtype> block = whole;
        block.Q = object(room.part, room.block);
        block.need_R = !last && !series.hyperdescent;
        const StatusSection section(status, progress.text(i));
        with_block(summed, range, [&](const auto& planned) {
            planned.run(ctx, status, block, object(room.block_T, room.block));
        });
        if (observer) observer->block_done(range, block);
        if (!block.need_R)
            lmb_Verify_BSR<wtype>(range.s, range.e, {&block.P, &block.Q}, threads);
        else
            lmb_Verify_BSR<wtype>(range.s, range.e, {&block.P, &block.Q, &block.R}, threads);
        widen(block.P, whole.P);
        widen(block.Q, whole.Q);
        if (!last) {
            const upL_t longest = std::max(block.P.L, block.Q.L) + std::max(result.P.L, result.Q.L) + 8;
            const ExactFloat<wtype> T = longest <= small_words<wtype>()
                                            ? object(room.small_T, room.end - room.small_T)
                                            : object(room.R, room.right_Q - room.R);
            bsr_merge(ctx, series, block, result, T);
            if (observer) observer->sum_done(Region(range.s, end), block);
            lmb_Verify_BSR<wtype>(range.s, end, {&block.P, &block.Q}, threads, BSRStep::merge);
        }
        cut_exact(block.P, tail_words(range.s), threads);
        cut_exact(block.Q, tail_words(range.s), threads);
        if (i == 0) {
            result.P = block.P;
            result.Q = block.Q;
        } else {
            result.P.set_ExactFloat(block.P, threads);
            result.Q.set_ExactFloat(block.Q, threads);
        }
    }
}

template <typename wtype>
void PSR_SeriesB<wtype>::finish(const MultiplyContext& ctx, const Parts<wtype>& sum,
                                BigFloat<wtype>& numerator, BigFloat<wtype>& denominator,
                                wtype* words) const {
    const ParallelContext threads = ctx.parallel();
    const upL_t precision = p + 2;
    const BigFloat<wtype> P = as_big_float(sum.P);
    const BigFloat<wtype> Q = as_big_float(sum.Q);
    BigFloat<wtype> A(words + room.R, output_words), B(words + room.R + output_words, output_words);
    A.set_mul_sL(precision, P, coefficients.coefP, threads);
    BigFloat<wtype>* over = &A;
    if (coefficients.coefQ != 0) {
        BigFloat<wtype> term(words, output_words);  // P is not needed any more
        term.set_mul_sL(precision, Q, coefficients.coefQ, threads);
        B.set_add(precision, threads, A, term);
        over = &B;
    }
    BigFloat<wtype> first(words, output_words), second(words + output_words, output_words);
    first.set_mul_sL(precision, Q, coefficients.coefD, threads);
    second.set_BigFloat(precision, *over, threads);
    numerator = coefficients.power == 1 ? second : first;
    denominator = coefficients.power == 1 ? first : second;
}

template class PSR_SeriesB<std::uint32_t>;
template class PSR_SeriesB<std::uint64_t>;

}  // namespace lumo
