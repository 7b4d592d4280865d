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

upL_t PiConstant::terms(upL_t precision_words) const {
    return plan(precision_words, 1).terms();
}

SizeEstimate PiConstant::estimate(upL_t precision_words, upL_t tds) const {
    const auto made = plan(precision_words, tds);
    return {made.total_bytes(), made.max_product_bits()};
}

lumo::BigFloat<std::uint64_t> PiConstant::compute(const ComputeContext& context) const {
    const auto made = plan(context.precision_words, context.parallel.tds);
    // A line of its own above those of the phases.
    { const lumo::StatusSection title(context.status, {{'G', algorithm().run_title}}); }
    const lumo::MultiplyContext ctx{context.parallel.tds,  context.parallel.parallelizer, 0, 0,
                                    context.buffer.data(), context.buffer.size()};
    return made.run(ctx, context.status);
}

}  // namespace velmora
