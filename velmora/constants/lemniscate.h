/// The lemniscate constant as the session computes it.
#pragma once

#include "velmora/constants/constant.h"
#include "velmora/constants/plans/lemniscate_agm.h"
#include "velmora/constants/plans/series_sum.h"

namespace velmora {

/// Gauss: 8 ArcSinlemn(1/2) + 4 ArcSinlemn(7/23). Sebah: 8 ArcSinlemn(2/3) - 4 ArcSinlemn(7/137).
enum class LemniscateFormula { gauss, sebah };

template <typename wtype>
SeriesSum_BigFloatR<wtype> Lemniscate_Machin_BigFloatR(LemniscateFormula formula, upL_t p, upL_t tds);

class LemniscateConstant final : public Constant {
 public:
    using Constant::Constant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

    upL_t terms(upL_t precision_words) const override;
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const override;
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override;

 private:
    /// What `use` makes of the plan of the chosen algorithm.
    template <typename Use>
    auto with_plan(upL_t precision_words, upL_t tds, Use use) const;
};

}  // namespace velmora
