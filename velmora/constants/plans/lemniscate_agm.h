/// The lemniscate constant by the arithmetic-geometric mean: 2 Pi / AGM(1, sqrt(2)). Sizes are words of
/// `wtype` unless named bytes.
#pragma once

#include "lumo/functions/agm.h"
#include "velmora/constants/plans/pi_series.h"
#include "velmora/constants/plans/square_root.h"

namespace velmora {

template <typename wtype>
class Lemniscate_AGM_BigFloatR {
 public:
    /// `power` +1 gives the constant, -1 its inverse; anything else throws InvalidParametersException
    /// "Power must be 1 or -1.".
    Lemniscate_AGM_BigFloatR(int power, lumo::upL_t p, lumo::upL_t tds);

    lumo::upL_t terms() const { return pi.terms(); }
    lumo::upL_t total_bytes() const { return bytes; }
    lumo::upL_t max_product_words() const;

    /// The value to p words; it lies within ctx.scratch, which holds total_bytes(): BufferTooSmallException
    /// "Lemniscate_AGM_BigFloatR::run()" otherwise. ctx.tds is the plan's. `observer` sees the series of Pi.
    lumo::BigFloat<wtype> run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status,
                              lumo::SeriesObserver<wtype>* observer = nullptr) const;

 private:
    using Number = lumo::BigFloat<wtype>;

    int power;
    lumo::upL_t p;
    Sqrt_BigFloatR<wtype> root;
    lumo::AGM1_BigFloatR<wtype> mean;
    Pi_Series_BigFloatR<wtype> pi;
    lumo::Division_BigFloatR<wtype> division;
    lumo::upL_t number_words;
    lumo::upL_t bytes;
};

}  // namespace velmora
