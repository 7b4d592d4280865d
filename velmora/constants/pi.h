/// Pi as the session computes it.
#pragma once

#include "velmora/constants/constant.h"
#include "velmora/constants/plans/pi_series.h"

namespace velmora {

class PiConstant final : public Constant {
 public:
    using Constant::Constant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

    upL_t terms(upL_t precision_words) const override;
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const override;
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override;

 private:
    Pi_Series_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const;
};

}  // namespace velmora
