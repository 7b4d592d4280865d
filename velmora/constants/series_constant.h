/// A constant that is the value of one series.
#pragma once

#include "velmora/constants/constant.h"
#include "velmora/constants/plans/series_value.h"

namespace velmora {

class SeriesConstant : public Constant {
 public:
    using Constant::Constant;
    upL_t terms(upL_t precision_words) const final;
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const final;
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const final;

 protected:
    /// The series of the chosen algorithm.
    virtual Series_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const = 0;
};

}  // namespace velmora
