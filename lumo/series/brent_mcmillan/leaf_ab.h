/// The leaf of the recursion: a short run of terms by word arithmetic.
#pragma once

#include "lumo/series/brent_mcmillan/parts_ab.h"
#include "lumo/series/brent_mcmillan/series_ab.h"

namespace lumo {

/// Longest run that leaf_ab() takes.
inline constexpr upL_t LEAF_TERMS_AB = 32;

/// Fills the parts of [a, b), with their hashes.
template <typename wtype>
void leaf_ab(const SeriesBrentMcMillanAB<wtype>& series, Region range, PartsAB<wtype>& out);

}  // namespace lumo
