/// Pi as the session computes it.
#pragma once

#include "velmora/constants/planned_constant.h"
#include "velmora/constants/plans/pi_series.h"

namespace velmora {

class PiConstant final : public PlannedConstant<Pi_Series_BigFloatR<std::uint64_t>> {
 public:
    using PlannedConstant::PlannedConstant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

 private:
    Pi_Series_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const override;
};

}  // namespace velmora
