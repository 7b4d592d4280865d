#include "lumo/series/brent_mcmillan/sum_ab.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/series/bsr_block_t.h"
#include "lumo/series/modular_check.h"
#include "lumo/series/size_text.h"
#include "lumo/series/sum_progress.h"

namespace lumo {
namespace {

/// Words by which the sum of what follows is kept longer than the precision it needs.
constexpr upL_t GUARD_WORDS = 4;

/// The first m in (a, b] at which the block is as long as what follows needs to be.
template <typename wtype>
upL_t block_end(const SeriesBrentMcMillanAB<wtype>& series, upL_t a, upL_t b, DoubleDouble size) {
    if (b - a <= BSR_SERIAL_TERMS) return b;
    upL_t lo = a;
    upL_t hi = b;
    while (hi - lo > 1) {
        const upL_t m = lo + (hi - lo) / 2;
        (series.remaining(m, size) > series.block_size(a, m) ? lo : hi) = m;
    }
    return hi;
}

}  // namespace

template <typename wtype>
SumAB<wtype>::SumAB(const SeriesBrentMcMillanAB<wtype>& series_, upL_t p, upL_t tds_)
    : series(series_), size(words_to_size<wtype>(p)), tds(tds_) {
    terms = series.terms_for(size);
    end = terms + 1;
    for (upL_t a = 1; a != end;) {
        plan.emplace_back(a, block_end(series, a, end, size));
        a = plan.back().e;
    }
    output_words = align_words<wtype>(tail_words(1) + 4);
    work_words = 0;
    byte_scratch = 0;
    max_product_words = 0;
    const auto take = [](upL_t& largest, upL_t value) { largest = std::max(largest, value); };
    for (auto range = plan.rbegin(); range != plan.rend(); ++range) {
        const BlockAB<wtype> block(series, *range, tds);
        take(block_sizes.T, block.sizes.T);
        take(block_sizes.V, block.sizes.V);
        take(block_sizes.C, block.sizes.C);
        take(block_sizes.D, block.sizes.D);
        take(work_words, block.work_words);
        take(byte_scratch, block.byte_scratch);
        take(max_product_words, block.product_words);
        if (range == plan.rbegin()) continue;
        // The numbers of the sum before this block are no longer than those after it.
        const upL_t limit = tail_words(range->s);
        const SizesAB words{series.T_words(range->s, range->e), series.V_words(range->s, range->e),
                            series.C_words(range->s, range->e), series.D_words(range->s, range->e)};
        const TempsAB temps = join_temps_ab<wtype>(words, limit);
        take(join_temps.E, temps.E);
        take(join_temps.F, temps.F);
        take(join_temps.G, temps.G);
        take(join_temps.H, temps.H);
        take(join_temps.X, temps.X);
        take(join_temps.Y, temps.Y);
        const upL_t longest = std::max(temps.G, temps.X);
        take(byte_scratch, merge_scratch_ab<wtype>(longest, tds));
        take(max_product_words, longest + 8);
    }
    take(work_words, join_temps.sum());
    byte_scratch = align_bytes(byte_scratch);
    word_scratch = block_sizes.sum() + work_words;
}

template <typename wtype>
upL_t SumAB<wtype>::tail_words(upL_t a) const {
    return size_to_words<wtype>(series.remaining(a, size)) + GUARD_WORDS;
}

template <typename wtype>
void SumAB<wtype>::run(const MultiplyContext& ctx, StatusNode& status, PartsAB<wtype>& result, wtype* words,
                       upL_t word_count, ObserverAB<wtype>* observer) const {
    constexpr const char* LOCATION = "BrentMcMillanAB::PSR_SeriesB::run()";
    if (ctx.tds > tds)
        throw InvalidParametersException(LOCATION,
                                         "Attempted to run with a larger tds than the plan supports.");
    for (const ExactFloat<wtype>* number : {&result.T, &result.V, &result.D})
        require_capacity(LOCATION, number->capacity, output_words);
    require_capacity(LOCATION, word_count, word_scratch);
    require_capacity(LOCATION, ctx.scratch_bytes, byte_scratch);
    LinearWordBuffer<wtype> buffer(words, word_count);
    const PartsAB<wtype> storage = cut_parts(buffer, block_sizes);
    LinearWordBuffer<wtype> join_buffer = buffer;
    const WorkAB<wtype> join_work = cut_work(join_buffer, join_temps);
    const ParallelContext threads = ctx.parallel();

    const StatusSection title(status, {{'G', "Series A and B...  "}});
    { const StatusSection count(status, {{'Y', Console::format_commas(terms)}, {'w', " terms  "}}); }
    const SumProgress progress(plan);
    for (upL_t i = plan.size(); i-- != 0;) {
        const Region range = plan[i];
        const bool last = i + 1 == plan.size();
        ColorString text = progress.text(i);
        text.insert(text.end(), {{'w', "> "}, {'Y', digits_text<wtype>(series.V_words(range.s, range.e))}});
        const StatusSection section(status, text);
        PartsAB<wtype> block = storage;
        block.need_C = !last;
        BlockAB<wtype>(series, range, tds).run(ctx, block, buffer);
        if (observer) observer->block_done(range, block);
        lmb_Verify_BSR<wtype>(range.s, range.e, {&block.T, &block.V, &block.D}, threads);
        const upL_t limit = tail_words(range.s);
        if (last) {
            for (const auto& [to, from] :
                 {std::pair(&result.T, &block.T), {&result.V, &block.V}, {&result.D, &block.D}}) {
                cut_checked(*from, limit, range, threads);
                to->set_ExactFloat(*from, threads);
            }
        } else {
            lmb_Verify_BSR<wtype>(range.s, range.e, {&block.C}, threads);
            join_ab(ctx, 2 * series.k() * range.terms(), range, block, result, limit, join_work);
        }
        if (observer) observer->sum_done(Region(range.s, end), result);
        lmb_Verify_BSR<wtype>(range.s, end, {&result.T, &result.V, &result.D}, threads,
                              last ? BSRStep::range : BSRStep::merge);
    }
}

template class SumAB<std::uint32_t>;
template class SumAB<std::uint64_t>;

}  // namespace lumo
