/// The series of zeta(3) and of Catalan's constant: one row of data each.
#pragma once

#include <memory>

#include "lumo/series/psr_series.h"

namespace velmora {

enum class BuiltinSeries {
    zeta3_wedeniwski,         ///< Wedeniwski (1998)
    zeta3_az,                 ///< Amdeberhan and Zeilberger (1997)
    catalan_pilehrood_short,  ///< Hessami Pilehrood (2010)
    catalan_pilehrood_long,   ///< Hessami Pilehrood (2010)
    catalan_guillera2008,     ///< Guillera (2008)
    catalan_guillera2019,     ///< Guillera (2019)
    catalan_lupas,            ///< Lupas (2000)
    catalan_huvent,           ///< Huvent (2006)
};

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> make_series(BuiltinSeries which);

/// What turns the sum from k = 1 into the constant.
lumo::SeriesCoefficients constant_coefficients(BuiltinSeries which);

}  // namespace velmora
