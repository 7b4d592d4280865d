/// A whole series of the P, Q, R family in memory, as one fraction at a given precision.
///
/// The blocks of the plan are summed from the last to the first: what follows a block is already one pair
/// (P, Q), cut to the precision that it still needs, and R of the last block is never made. Every block and
/// every sum is checked modulo 2^61 - 1.
#pragma once

#include <optional>
#include <vector>

#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float.h"
#include "lumo/series/bsr_block_b.h"
#include "lumo/series/reduced_series.h"

namespace lumo {

/// The fraction is (coefP P + coefQ Q) / (coefD Q), or its inverse for power -1.
struct SeriesCoefficients {
    std::int64_t coefP;
    std::int64_t coefQ;
    std::int64_t coefD;
    int power;
};

/// Called where a fault would do harm; a test overrides it to plant one.
template <typename wtype>
class SeriesObserver {
 public:
    virtual ~SeriesObserver() = default;
    virtual void block_done(const Region&, Parts<wtype>&) {}
    virtual void sum_done(const Region&, Parts<wtype>&) {}
};

template <typename wtype>
class PSR_SeriesB {
 public:
    /// `p` is the precision in words, `short_blocks` takes blocks of half the length. Throws
    /// InvalidParametersException "Power must be 1 or -1.", "CoefficientP cannot be zero." or "CoefficientD
    /// must be positive." at "PSR_SeriesB()".
    PSR_SeriesB(const SeriesCommonP2B3<wtype>& series, SeriesCoefficients coefficients, upL_t p, upL_t tds,
                bool short_blocks);

    upL_t terms;
    upL_t output_words;  ///< capacity of numerator and of denominator
    upL_t word_scratch;  ///< words, the outputs among them
    upL_t byte_scratch;
    upL_t total_bytes() const { return byte_scratch + word_scratch * sizeof(wtype); }
    upL_t max_product_words;  ///< longest product that run() makes
    const std::vector<Region>& blocks() const { return plan; }

    /// numerator / denominator := the series' value, in the first 2 output_words of `words`, in either order.
    /// ctx.scratch holds byte_scratch, and with more the merges are faster; `words` holds word_scratch.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& numerator,
             BigFloat<wtype>& denominator, wtype* words, upL_t word_count,
             SeriesObserver<wtype>* observer) const;

 private:
    upL_t tail_words(upL_t a) const;
    /// Where numbers stand in `words`. A block takes P and Q in front, T and R; the sum of what follows
    /// stands behind, cut to what it still needs. A merge writes its P and Q over the block's, as long as
    /// both operands together, and its working number over R and the following P.
    struct Room {
        upL_t part = 0;   ///< words of a merge's P, and of its Q
        upL_t block = 0;  ///< words of a block's P, Q, R and T
        upL_t sum = 0;    ///< words of the following sum's P, and of its Q
        upL_t block_T = 0, R = 0, right_P = 0, right_Q = 0, small_T = 0, end = 0;
        Room() = default;
        Room(upL_t part, upL_t block, upL_t sum, upL_t output, bool has_R);
    };
    void sum(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& result, wtype* words,
             SeriesObserver<wtype>* observer) const;
    void finish(const MultiplyContext& ctx, const Parts<wtype>& sum, BigFloat<wtype>& numerator,
                BigFloat<wtype>& denominator, wtype* words) const;
    /// What `use` makes of the plan of a block.
    template <typename Use>
    auto with_block(const SeriesCommonP2B3<wtype>& summed, Region range, Use use) const;
    const SeriesCommonP2B3<wtype>& sized() const {
        if (reduced) return *reduced;
        return series;
    }

    const SeriesCommonP2B3<wtype>& series;
    std::optional<ReducedSeries<wtype>> reduced;  ///< its sizes
    SeriesCoefficients coefficients;
    upL_t p;
    upL_t tds;
    upL_t end;  ///< one past the last term
    std::vector<Region> plan;
    Room room;
};

}  // namespace lumo
