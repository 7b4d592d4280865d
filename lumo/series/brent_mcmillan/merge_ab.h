/// Merges of the coupled sums: of two ranges exactly, and of a range with the cut sum of all that follows it.
#pragma once

#include "lumo/multiply/multiply_context.h"
#include "lumo/series/brent_mcmillan/parts_ab.h"

namespace lumo {

/// Working numbers of a merge, with the capacities that TempsAB gives.
template <typename wtype>
struct WorkAB {
    ExactFloat<wtype> E, F, G, H, X, Y;
};

/// Longest products of which two run side by side, each with half of the threads: longer ones have work for
/// all.
template <typename wtype>
inline constexpr upL_t PAIR_WORDS_AB = (upL_t(1) << 22) / WordTraits<wtype>::bits;

/// Capacities, in words.
struct TempsAB {
    upL_t E = 0;
    upL_t F = 0;
    upL_t G = 0;
    upL_t H = 0;
    upL_t X = 0;
    upL_t Y = 0;
    upL_t sum() const { return E + F + G + H + X + Y; }
};

/// For merges of ranges of which each is within `part`.
template <typename wtype>
TempsAB merge_temps_ab(const SizesAB& part);
/// For a range within `block`, and a sum of at most `limit` words a number.
template <typename wtype>
TempsAB join_temps_ab(const SizesAB& block, upL_t limit);

template <typename wtype>
WorkAB<wtype> cut_work(LinearWordBuffer<wtype>& buffer, const TempsAB& temps);

/// Scratch for products of at most `words` words, two short ones at a time when tds >= 2. With the least
/// scratch images of long operands are made in parts.
template <typename wtype>
upL_t merge_scratch_ab(upL_t words, upL_t tds);

/// The results stand in left's buffers, which may hold right's parts above left's own; `shift` is the bits of
/// S0. C is made only when right.need_C. Hashes follow from hashes; nothing is checked here.
template <typename wtype>
void merge_ab(const MultiplyContext& ctx, upL_t shift, PartsAB<wtype>& left, const PartsAB<wtype>& right,
              WorkAB<wtype> work);

/// tail := block merged with tail, every number and every intermediate one cut to its top `limit` words. What
/// is cut is checked first: BSRModularCheckFailedException for [a, b) otherwise. tail has no C; its buffers
/// hold limit + 2 words, and 1 more for carries.
template <typename wtype>
void join_ab(const MultiplyContext& ctx, upL_t shift, Region range, const PartsAB<wtype>& block,
             PartsAB<wtype>& tail, upL_t limit, WorkAB<wtype> work);

/// Drops low words until at most `limit` are left, after a check of the number.
template <typename wtype>
void cut_checked(ExactFloat<wtype>& number, upL_t limit, Region range, const ParallelContext& ctx);

}  // namespace lumo
