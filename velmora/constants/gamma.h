/// Euler's constant as the session computes it.
#pragma once

#include "velmora/constants/planned_constant.h"
#include "velmora/constants/plans/brent_mcmillan.h"

namespace velmora {

class GammaConstant final : public PlannedConstant<BrentMcMillan_BigFloatR<std::uint64_t>> {
 public:
    using PlannedConstant::PlannedConstant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

 private:
    BrentMcMillan_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const override;
};

}  // namespace velmora
