#include "velmora/constants/zeta3.h"

#include "velmora/constants/series/builtin_series.h"

namespace velmora {

std::unique_ptr<Constant> Zeta3Constant::make(const CatalogueEntry& entry) {
    return std::make_unique<Zeta3Constant>(entry);
}

Series_BigFloatR<std::uint64_t> Zeta3Constant::plan(upL_t precision_words, upL_t tds) const {
    const BuiltinSeries which = algorithm().token == std::string_view("az") ? BuiltinSeries::zeta3_az
                                                                            : BuiltinSeries::zeta3_wedeniwski;
    return {make_series<std::uint64_t>(which), constant_coefficients(which), precision_words, tds};
}

}  // namespace velmora
