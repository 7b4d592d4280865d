/// The leaf of the recursion: a short run of terms by word arithmetic.
#pragma once

#include "lumo/series/bsr_objects.h"

namespace lumo {

/// Fills the parts for [a, b), a run of at least one term, with their hashes. The capacities are those that
/// series.words(a, b) gives: BufferTooSmallException "BSR_E()" otherwise.
template <typename wtype>
void bsr_end(const SeriesCommonP2B3<wtype>& series, Region range, Parts<wtype>& out);

}  // namespace lumo
