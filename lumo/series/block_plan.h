/// The consecutive ranges ("blocks") into which a sum is cut. Terms far out need far fewer digits: a block
/// ends where its own size has reached the precision that the rest still needs, so that each block and the
/// sum of all that follow it meet at about one length.
#pragma once

#include <vector>

#include "lumo/foundation/status/status_node.h"
#include "lumo/series/bsr_objects.h"

namespace lumo {

/// The first m in (a, b] with block_size(a, m) >= remaining(m).
template <typename wtype>
upL_t equilibrium(const SeriesCommonP2B3<wtype>& series, upL_t b, upL_t a);
/// The first m in (a, b] with block_size(a, m) >= limit, b if none.
template <typename wtype>
upL_t cut(const SeriesCommonP2B3<wtype>& series, upL_t b, upL_t a, DoubleDouble limit);

/// Blocks for the terms [first, end), none longer than `limit_words`. A plan of ten thousand blocks is
/// reported on the console, which then waits for the user.
template <typename wtype>
std::vector<Region> make_block_plan(const SeriesCommonP2B3<wtype>& series, upL_t first, upL_t end,
                                    upL_t limit_words);

}  // namespace lumo
