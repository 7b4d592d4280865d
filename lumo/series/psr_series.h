/// A whole series of the P, Q, R family in memory, as one fraction at a given precision.
///
/// The blocks of the plan are summed from the last to the first: what follows a block is already one pair
/// (P, Q), cut to the precision that it still needs, and R of the last block is never made. Every block and
/// every sum is checked modulo 2^61 - 1.
#pragma once

#include <vector>

#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float.h"
#include "lumo/series/bsr_block_b.h"

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
    /// `p` is the precision in words, `reduced` takes blocks of half the length. Throws
    /// InvalidParametersException "Power must be 1 or -1.", "CoefficientP cannot be zero." or "CoefficientD
    /// must be positive." at "PSR_SeriesB()".
    PSR_SeriesB(const SeriesCommonP2B3<wtype>& series, SeriesCoefficients coefficients, upL_t p, upL_t tds,
                bool reduced);

    upL_t terms;
    upL_t output_words;  ///< capacity of numerator and denominator
    upL_t word_scratch;  ///< words, beside the outputs
    upL_t byte_scratch;
    upL_t total_bytes() const { return byte_scratch + (word_scratch + 2 * output_words) * sizeof(wtype); }
    upL_t max_product_words;  ///< longest product that run() makes
    const std::vector<Region>& blocks() const { return plan; }

    /// numerator / denominator := the series' value. ctx.scratch holds byte_scratch, `words` word_scratch.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& numerator,
             BigFloat<wtype>& denominator, wtype* words, upL_t word_count,
             SeriesObserver<wtype>* observer) const;

 private:
    upL_t tail_words(upL_t a) const;
    void sum(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& result, wtype* words,
             upL_t word_count, SeriesObserver<wtype>* observer) const;
    void finish(const MultiplyContext& ctx, StatusNode& status, const Parts<wtype>& sum,
                BigFloat<wtype>& numerator, BigFloat<wtype>& denominator, wtype* words,
                upL_t word_count) const;
    BSR_BlockB<wtype> block_plan(Region range) const;

    const SeriesCommonP2B3<wtype>& series;
    SeriesCoefficients coefficients;
    upL_t p;
    upL_t tds;
    upL_t end;  ///< one past the last term
    std::vector<Region> plan;
    upL_t part_words;   ///< capacity of a block's P, Q and of T
    upL_t ratio_words;  ///< capacity of a block's R
    upL_t sum_words;    ///< capacity of the running sum's P and Q
};

}  // namespace lumo
