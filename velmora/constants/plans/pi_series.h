/// Pi and 1 / Pi by a series of the P, Q, R family: the sum as one fraction, a division, an inverse square
/// root of one word and a product. Sizes are words of `wtype` unless named bytes.
#pragma once

#include "lumo/functions/inverse_sqrt.h"
#include "velmora/constants/plans/series_value.h"

namespace velmora {

enum class PiSeries { chudnovsky, ramanujan };

template <typename wtype>
class Pi_Series_BigFloatR {
 public:
    /// `power` +1 gives Pi, -1 gives 1 / Pi; anything else throws InvalidParametersException
    /// "Power must be 1 or -1." at "PSR_SeriesB()". `reduced` plans blocks of half the length.
    Pi_Series_BigFloatR(PiSeries series, int power, lumo::upL_t p, lumo::upL_t tds, bool reduced);

    lumo::upL_t terms() const { return series.terms(); }
    lumo::upL_t total_bytes() const { return bytes; }
    lumo::upL_t max_product_words() const { return product_words; }

    /// The value to p words, within the buffer of ctx.scratch, which holds total_bytes().
    /// BufferTooSmallException "Pi_Series_BigFloatR::run()" otherwise. ctx.tds is the plan's.
    lumo::BigFloat<wtype> run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status,
                              lumo::SeriesObserver<wtype>* observer = nullptr) const;

 private:
    using Number = lumo::BigFloat<wtype>;

    wtype radicand;
    lumo::upL_t p;
    lumo::upL_t tds;
    Series_BigFloatR<wtype> series;
    lumo::InvsqrtWord_BigFloatR<wtype> root;
    lumo::upL_t root_words;
    lumo::upL_t output_words;
    lumo::upL_t product_bytes;  ///< scratch of the last product
    lumo::upL_t product_words;  ///< longest product of all
    lumo::upL_t bytes;
};

}  // namespace velmora
