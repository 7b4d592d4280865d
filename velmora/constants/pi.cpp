#include "velmora/constants/pi.h"

namespace velmora {

std::unique_ptr<Constant> PiConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<PiConstant>(entry);
}

Pi_Series_BigFloatR<std::uint64_t> PiConstant::plan(upL_t precision_words, upL_t tds) const {
    const std::string_view token = algorithm().token;
    const PiSeries series = token.starts_with("ramanujan") ? PiSeries::ramanujan : PiSeries::chudnovsky;
    return {series, 1, precision_words, tds, token.ends_with("-reduced")};
}

}  // namespace velmora
