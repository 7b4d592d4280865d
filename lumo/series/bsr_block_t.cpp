#include "lumo/series/bsr_block_t.h"

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

template <typename wtype>
BSR_BlockT<wtype>::BSR_BlockT(const SeriesCommonP2B3<wtype>& series_, upL_t words, upL_t terms, upL_t tds_)
    : result_words(words), byte_scratch(0), tds(tds_), series(series_) {
    unsigned level = 0;
    upL_t t = tds;
    for (; t > 1; t = (t + 1) / 2) {
        byte_scratch = std::max(byte_scratch, align_bytes(bsr_merge_scratch<wtype>(words + 1, t)) << level);
        words = series.half_words(words);
        ++level;
        result_words = std::max(result_words, align_words<wtype>(words) << level);
    }
    byte_scratch =
        std::max(byte_scratch,
                 align_bytes(std::max(bsr_merge_scratch<wtype>(words + 1, 1), series.join_bytes)) << level);
    if (level != 0) {
        // Halving the words has halved what a recursion loses at its levels, which a fork has nearly all of.
        words += series.recursion_words(terms);
        result_words = std::max(result_words, align_words<wtype>(words) << level);
    }
    // Halving a buffer rounds down to the alignment unit at every level.
    byte_scratch = align_bytes(byte_scratch) + (ALIGNMENT_BYTES << (level + 1));
    result_words = align_words<wtype>(result_words) + (WordTraits<wtype>::align_words << (level + 1));
}

template <typename wtype>
void BSR_BlockT<wtype>::run(const MultiplyContext& ctx, Region range, Parts<wtype>& out,
                            ExactFloat<wtype> T) const {
    require_capacity("BSR_BlockT::run()", out.P.capacity, result_words);
    require_capacity("BSR_BlockT::run()", out.Q.capacity, result_words);
    if (!series.hyperdescent) require_capacity("BSR_BlockT::run()", out.R.capacity, result_words);
    require_capacity("BSR_BlockT::run()", T.capacity, result_words);
    require_capacity("BSR_BlockT::run()", ctx.scratch_bytes, byte_scratch);
    MultiplyContext inner = ctx;
    inner.tds = tds;
    fork(inner, range, out, T);
}

template <typename wtype>
void BSR_BlockT<wtype>::fork(const MultiplyContext& ctx, Region range, Parts<wtype>& out,
                             ExactFloat<wtype> T) const {
    if (range.terms() <= BSR_SERIAL_TERMS || ctx.tds < 2) {
        recurse(ctx.single_threaded(), range, out, T);
        return;
    }
    const upL_t m = series.split(range.s, range.e);
    const auto [low_scratch, high_scratch] = ctx.buffer().halves();
    MultiplyContext low = ctx.with_scratch(low_scratch);
    MultiplyContext high = ctx.with_scratch(high_scratch);
    low.tds = ctx.tds - ctx.tds / 2;
    high.tds = ctx.tds / 2;
    Parts<wtype> left{lower_half(out.P), lower_half(out.Q), lower_half(out.R), !series.hyperdescent};
    Parts<wtype> right{upper_half(out.P), upper_half(out.Q), upper_half(out.R), out.need_R};
    parallel_invoke(
        *ctx.parallelizer, [&] { fork(low, Region(range.s, m), left, lower_half(T)); },
        [&] { fork(high, Region(m, range.e), right, upper_half(T)); });
    widen(left.P, out.P);
    widen(left.Q, out.Q);
    widen(left.R, out.R);
    bsr_join(ctx, series, range, left, right, T, out);
}

template <typename wtype>
void BSR_BlockT<wtype>::recurse(const MultiplyContext& ctx, Region range, Parts<wtype>& out,
                                ExactFloat<wtype> T) const {
    if (range.terms() < series.leaf_terms || range.terms() == 1) {
        series.end(range.s, range.e, out);
        return;
    }
    const upL_t m = range.terms() > 100 ? series.split(range.s, range.e) : (range.s + range.e) / 2;
    Parts<wtype> left{out.P, out.Q, out.R, !series.hyperdescent};
    recurse(ctx, Region(range.s, m), left, T);
    Parts<wtype> right{free_space_above(left.P), free_space_above(left.Q), free_space_above(left.R),
                       out.need_R};
    recurse(ctx, Region(m, range.e), right, T);
    bsr_join(ctx, series, range, left, right, T, out);
}

template class BSR_BlockT<std::uint32_t>;
template class BSR_BlockT<std::uint64_t>;

}  // namespace lumo
