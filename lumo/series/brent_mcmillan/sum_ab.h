/// The coupled sums over all terms, to a given precision: blocks from the last to the first, as PSR_SeriesB
/// does it. Every block and every sum is checked modulo 2^61 - 1.
#pragma once

#include <vector>

#include "lumo/foundation/status/status_node.h"
#include "lumo/series/brent_mcmillan/block_ab.h"

namespace lumo {

template <typename wtype>
class SumAB {
 public:
    /// `p` is the precision in words.
    SumAB(const SeriesBrentMcMillanAB<wtype>& series, upL_t p, upL_t tds);

    upL_t terms;
    upL_t output_words;  ///< capacity of each of T, V and D
    upL_t word_scratch;
    upL_t byte_scratch;
    upL_t max_product_words;
    const std::vector<Region>& blocks() const { return plan; }

    /// result := T, V and D over all terms, each to p words and more; C is not used. ctx.scratch holds
    /// byte_scratch, `words` word_scratch. InvalidParametersException when ctx.tds is above the plan's.
    void run(const MultiplyContext& ctx, StatusNode& status, PartsAB<wtype>& result, wtype* words,
             upL_t word_count, ObserverAB<wtype>* observer) const;

 private:
    upL_t tail_words(upL_t a) const;

    const SeriesBrentMcMillanAB<wtype>& series;
    DoubleDouble size;
    upL_t tds;
    upL_t end;  ///< one past the last term
    std::vector<Region> plan;
    SizesAB block_sizes;
    TempsAB join_temps;
    upL_t work_words;
};

}  // namespace lumo
