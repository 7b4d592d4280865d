/// Square roots of integers, and the golden ratio, as the session computes them.
#pragma once

#include "velmora/constants/integer_constant.h"

namespace velmora {

class SqrtConstant final : public IntegerConstant {
 public:
    using IntegerConstant::IntegerConstant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

    upL_t terms(upL_t) const override { return 0; }
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const override;
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override;

 protected:
    std::string refusal(upL_t n) const override;
};

class GoldenRatioConstant final : public Constant {
 public:
    using Constant::Constant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

    upL_t terms(upL_t) const override { return 0; }
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const override;
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override;
};

}  // namespace velmora
