/// e as the session computes it.
#pragma once

#include "velmora/constants/series_constant.h"

namespace velmora {

/// e for `power` +1, by the series of exp(1) or, `alternating`, of exp(-1); 1 / e for -1, by the alternating
/// series alone. InvalidParametersException at "e_Taylor_BigFloatR()": "Power must be 1 or -1." and
/// "Inversion not supported for non-alternating series.".
template <typename wtype>
Series_BigFloatR<wtype> e_Taylor_BigFloatR(bool alternating, int power, upL_t p, upL_t tds);

class EConstant final : public SeriesConstant {
 public:
    using SeriesConstant::SeriesConstant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

 private:
    Series_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const override;
};

}  // namespace velmora
