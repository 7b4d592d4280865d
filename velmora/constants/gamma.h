/// Euler's constant as the session computes it.
#pragma once

#include "velmora/constants/constant.h"
#include "velmora/constants/plans/brent_mcmillan.h"

namespace velmora {

class GammaConstant final : public Constant {
 public:
    using Constant::Constant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

    upL_t terms(upL_t precision_words) const override;
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const override;
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override;

 private:
    BrentMcMillan_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const;
};

}  // namespace velmora
