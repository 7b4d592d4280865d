/// The merge of two neighbouring ranges of the family: P := P0 D1 r^n1 + D0 P1, D := D0 D1.
#pragma once

#include "lumo/series/binary_bbp/power_table.h"

namespace lumo {

/// Words of working space for the merge of two ranges that run on `threads` threads.
template <typename wtype>
upL_t merge_words_bbp(const BinaryBBP<wtype>& series, Region left, Region right, upL_t threads);
/// Scratch for merges whose results have at most `words` words.
template <typename wtype>
upL_t merge_scratch_bbp(upL_t words, upL_t tds);

/// D stands in R. The results stand in left's buffers, which may hold right's parts above left's own; T is
/// working space of merge_words_bbp(). `n` counts right's terms. Hashes follow from hashes; nothing is
/// checked here.
template <typename wtype>
void merge_bbp(const MultiplyContext& ctx, const PowerTable<wtype>& table, upL_t n, Parts<wtype>& left,
               const Parts<wtype>& right, ExactFloat<wtype> T);

}  // namespace lumo
