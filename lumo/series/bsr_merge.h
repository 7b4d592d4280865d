/// The merge of two neighbouring ranges: P0 := P0 Q1 + R0 P1, Q0 := Q0 Q1, R0 := R0 R1, R being 1 in a
/// hyperdescent series.
#pragma once

#include "lumo/multiply/multiply.h"
#include "lumo/series/bsr_objects.h"

namespace lumo {

/// Scratch for merges whose results have at most `words` words.
template <typename wtype>
upL_t bsr_merge_scratch(upL_t words, upL_t tds);
/// The least with which such merges can do, at the cost of images made twice.
template <typename wtype>
upL_t bsr_merge_least_scratch(upL_t words, upL_t tds);

/// The results stand in left's buffers, which may hold right's parts above left's own. T is working space of
/// the results' size; where they are longer than small_words() and right.need_R is false it may stand on
/// left.R and right.P. R is made only when right.need_R. Hashes follow from hashes; nothing is checked here.
template <typename wtype>
void bsr_merge(const MultiplyContext& ctx, const SeriesCommonP2B3<wtype>& series, Parts<wtype>& left,
               const Parts<wtype>& right, ExactFloat<wtype> T);

/// out := the range that left and right make, in left's buffers, reduced as the series wants it.
template <typename wtype>
void bsr_join(const MultiplyContext& ctx, const SeriesCommonP2B3<wtype>& series, Region range,
              Parts<wtype>& left, const Parts<wtype>& right, ExactFloat<wtype> T, Parts<wtype>& out) {
    if (!series.join(ctx, range.s, range.e, left, right, T)) bsr_merge(ctx, series, left, right, T);
    left.need_R = out.need_R;
    out = left;
}

}  // namespace lumo
