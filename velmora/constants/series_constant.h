/// A constant that is the value of one series.
#pragma once

#include "velmora/constants/planned_constant.h"
#include "velmora/constants/plans/series_value.h"

namespace velmora {

using SeriesConstant = PlannedConstant<Series_BigFloatR<std::uint64_t>>;

}  // namespace velmora
