#include "velmora/constants/catalan.h"

#include "lumo/foundation/errors/fatal.h"
#include "velmora/constants/series/builtin_series.h"

namespace velmora {
namespace {

constexpr std::pair<std::string_view, BuiltinSeries> SERIES[] = {
    {"pilehrood-short", BuiltinSeries::catalan_pilehrood_short},
    {"guillera2019", BuiltinSeries::catalan_guillera2019},
    {"pilehrood-long", BuiltinSeries::catalan_pilehrood_long},
    {"guillera2008", BuiltinSeries::catalan_guillera2008},
    {"lupas", BuiltinSeries::catalan_lupas},
    {"huvent", BuiltinSeries::catalan_huvent},
};

}  // namespace

std::unique_ptr<Constant> CatalanConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<CatalanConstant>(entry);
}

Series_BigFloatR<std::uint64_t> CatalanConstant::plan(upL_t precision_words, upL_t tds) const {
    const auto* const found = std::ranges::find(SERIES, std::string_view(algorithm().token),
                                                &std::pair<std::string_view, BuiltinSeries>::first);
    lumo::require(found != std::end(SERIES), "An algorithm of the catalogue has no series.");
    return {make_series<std::uint64_t>(found->second), constant_coefficients(found->second), precision_words,
            tds};
}

}  // namespace velmora
