/// Binary splitting of a range that forks over threads: each fork gets its own half of every buffer.
#pragma once

#include "lumo/series/bsr_merge.h"

namespace lumo {

/// Ranges of up to this many terms neither fork nor become blocks of their own.
inline constexpr upL_t BSR_SERIAL_TERMS = 999;

template <typename wtype>
class BSR_BlockT {
 public:
    /// For ranges of at most `terms` terms whose results need at most series.words() = `words`.
    BSR_BlockT(const SeriesCommonP2B3<wtype>& series, upL_t words, upL_t terms, upL_t tds);

    upL_t result_words;  ///< capacity of each of P, Q, R and of T
    upL_t byte_scratch;
    upL_t tds;

    /// Sums the range into `out`, whose objects come with capacities of result_words (R only where needed,
    /// too); T is one more of them. ctx.scratch holds byte_scratch. Allocates nothing.
    void run(const MultiplyContext& ctx, Region range, Parts<wtype>& out, ExactFloat<wtype> T) const;

 private:
    void fork(const MultiplyContext& ctx, Region range, Parts<wtype>& out, ExactFloat<wtype> T) const;
    void recurse(const MultiplyContext& ctx, Region range, Parts<wtype>& out, ExactFloat<wtype> T) const;
    const SeriesCommonP2B3<wtype>& series;
};

}  // namespace lumo
