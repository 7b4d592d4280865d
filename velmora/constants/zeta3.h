/// Zeta(3) as the session computes it.
#pragma once

#include "velmora/constants/series_constant.h"

namespace velmora {

class Zeta3Constant final : public SeriesConstant {
 public:
    using SeriesConstant::SeriesConstant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

 private:
    Series_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const override;
};

}  // namespace velmora
