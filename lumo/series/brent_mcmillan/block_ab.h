/// Binary splitting of a range of the coupled sums, forked over threads: each fork gets its own part of every
/// buffer, as large as it needs.
#pragma once

#include "lumo/series/brent_mcmillan/leaf_ab.h"
#include "lumo/series/brent_mcmillan/merge_ab.h"

namespace lumo {

template <typename wtype>
class BlockAB {
 public:
    BlockAB(const SeriesBrentMcMillanAB<wtype>& series, Region range, upL_t tds);

    SizesAB sizes;     ///< capacities of the results
    upL_t work_words;  ///< for working numbers
    upL_t byte_scratch;
    upL_t product_words;  ///< longest product

    /// Sums the range into `out`, whose numbers have the capacities above. ctx.tds is the plan's,
    /// ctx.scratch holds byte_scratch, `work` work_words. Allocates nothing.
    void run(const MultiplyContext& ctx, PartsAB<wtype>& out, LinearWordBuffer<wtype> work) const;

 private:
    /// What a range needs for so many threads.
    struct Needs {
        SizesAB sizes;
        upL_t work_words;
        upL_t byte_scratch;
    };
    Needs needs(Region part, upL_t threads) const;
    SizesAB result_sizes(Region part) const;
    TempsAB temps(Region part, upL_t m) const;
    void fork(const MultiplyContext& ctx, Region part, PartsAB<wtype>& out,
              LinearWordBuffer<wtype> work) const;
    void recurse(const MultiplyContext& ctx, Region part, PartsAB<wtype>& out,
                 const WorkAB<wtype>& work) const;

    const SeriesBrentMcMillanAB<wtype>& series;
    Region range;
    upL_t tds;
};

}  // namespace lumo
