/// Binary splitting of a large range in memory: the top levels one after the other, each merge with all
/// threads and a line of status; below them ranges that fork.
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/series/bsr_block_t.h"

namespace lumo {

template <typename wtype>
class BSR_BlockB {
 public:
    BSR_BlockB(const SeriesCommonP2B3<wtype>& series, Region range, upL_t tds, upL_t levels);

    upL_t result_words;  ///< capacity of each of P, Q, R and of T
    upL_t byte_scratch;
    upL_t tds;

    /// Capacities as in the plan (BufferTooSmallException "BSR_BlockB::run()"); a larger ctx.tds than the
    /// plan's throws InvalidParametersException.
    void run(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& out, ExactFloat<wtype> T) const;

 private:
    void run_level(const MultiplyContext& ctx, StatusNode& status, Region range, upL_t level,
                   Parts<wtype>& out, ExactFloat<wtype> T) const;
    static upL_t lower_words(const SeriesCommonP2B3<wtype>& series, Region range, upL_t levels);

    const SeriesCommonP2B3<wtype>& series;
    Region range;
    upL_t levels;
    BSR_BlockT<wtype> block;
};

/// Levels above which the merges of a range of `words` words are large enough to be worth all threads each.
template <typename wtype>
upL_t bsr_block_levels(upL_t words, upL_t tds);

}  // namespace lumo
