/// The natural logarithm by the arithmetic-geometric mean, for a caller that has neither Pi nor ln 2. Sizes
/// are words of `wtype` unless named bytes.
#pragma once

#include "lumo/functions/log_agm.h"
#include "velmora/constants/plans/pi_series.h"
#include "velmora/constants/plans/series_sum.h"

namespace velmora {

template <typename wtype>
class Log_AGM_alone_BigFloatR {
 public:
    using Number = lumo::BigFloat<wtype>;

    Log_AGM_alone_BigFloatR(lumo::upL_t p, lumo::upL_t tds);

    lumo::upL_t total_bytes() const { return bytes; }
    lumo::upL_t max_product_words() const;

    /// ln x with p words behind the point, less those that the bits of x's exponent take: the error is
    /// absolute. It lies within ctx.scratch, which holds total_bytes(), and x outside of it. ctx.tds is the
    /// plan's. The observers see the series of Pi and those of ln 2.
    ///
    /// BufferTooSmallException "AlignedBufferC::spawn_words()". At "Log_AGM_alone_BigFloatR::run()":
    /// ArithmeticException "Log(0)"; InvalidParametersException "Log of a negative number is complex.";
    /// LimitExceededException with the limit 0x1ffffffffffffff when the exponent of x, in bits, leaves 64
    /// bits.
    Number run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status, const Number& x,
               lumo::SeriesObserver<wtype>* pi_observer = nullptr,
               lumo::SeriesObserver<wtype>* log2_observer = nullptr) const;

 private:
    lumo::Log_AGM_BigFloatR<wtype> log;
    Pi_Series_BigFloatR<wtype> pi;
    SeriesSum_BigFloatR<wtype> log2;
    lumo::upL_t bytes;
};

}  // namespace velmora
