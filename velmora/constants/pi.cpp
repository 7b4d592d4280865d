#include "velmora/constants/pi.h"

#include "velmora/constants/planned_constant.h"

namespace velmora {

std::unique_ptr<Constant> PiConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<PiConstant>(entry);
}

Pi_Series_BigFloatR<std::uint64_t> PiConstant::plan(upL_t precision_words, upL_t tds) const {
    const std::string_view token = algorithm().token;
    const PiSeries series = token.starts_with("ramanujan") ? PiSeries::ramanujan : PiSeries::chudnovsky;
    return {series, 1, precision_words, tds, token.ends_with("-reduced")};
}

upL_t PiConstant::terms(upL_t precision_words) const {
    return plan(precision_words, 1).terms();
}

SizeEstimate PiConstant::estimate(upL_t precision_words, upL_t tds) const {
    return estimate_of(plan(precision_words, tds));
}

lumo::BigFloat<std::uint64_t> PiConstant::compute(const ComputeContext& context) const {
    print_title(context, algorithm().run_title);
    return plan(context.precision_words, context.parallel.tds).run(scratch_of(context), context.status);
}

}  // namespace velmora
