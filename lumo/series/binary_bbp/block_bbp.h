/// Binary splitting of a range of the family: the top levels one after the other with all threads and a line
/// of status each, ranges that fork below them, leaves at the end. Ranges are cut in the middle, whatever
/// their sizes, so that those of one level share a power of the ratio.
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/series/binary_bbp/merge_bbp.h"

namespace lumo {

template <typename wtype>
class BlockBBP {
 public:
    BlockBBP(const BinaryBBP<wtype>& series, Region range, upL_t tds, upL_t levels);

    upL_t result_words;  ///< capacity of each of P, Q, R and of T
    upL_t byte_scratch;
    upL_t tds;

    /// Sums the range into P, Q and R. Capacities as in the plan (BufferTooSmallException
    /// "BinaryBBP::BSR_BlockB::run()"); a larger ctx.tds than the plan's throws InvalidParametersException.
    void run(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& out, ExactFloat<wtype> T) const;

 private:
    /// What a range needs: words of P, of D and of working space, and bytes for products.
    struct Needs {
        upL_t P, D, work, bytes;
    };
    Needs needs(Region part, upL_t level, upL_t threads) const;
    bool is_leaf(Region part) const { return part.terms() == 1 || part.terms() < series.leaf_terms; }
    void run_level(const MultiplyContext& ctx, StatusNode& status, const PowerTable<wtype>& table,
                   Region part, upL_t level, Parts<wtype>& out, ExactFloat<wtype> T) const;
    void fork(const MultiplyContext& ctx, const PowerTable<wtype>& table, Region part, Parts<wtype>& out,
              ExactFloat<wtype> T) const;
    void recurse(const MultiplyContext& ctx, const PowerTable<wtype>& table, Region part, Parts<wtype>& out,
                 ExactFloat<wtype> T) const;

    const BinaryBBP<wtype>& series;
    Region range;
    upL_t levels;
};

}  // namespace lumo
