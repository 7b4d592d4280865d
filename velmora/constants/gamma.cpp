#include "velmora/constants/gamma.h"

#include "velmora/constants/planned_constant.h"

namespace velmora {

std::unique_ptr<Constant> GammaConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<GammaConstant>(entry);
}

BrentMcMillan_BigFloatR<std::uint64_t> GammaConstant::plan(upL_t precision_words, upL_t tds) const {
    const bool original = algorithm().token == std::string_view("brent-original");
    return {original ? BrentMcMillanForm::original : BrentMcMillanForm::refined, precision_words, tds};
}

upL_t GammaConstant::terms(upL_t precision_words) const {
    return plan(precision_words, 1).terms();
}

SizeEstimate GammaConstant::estimate(upL_t precision_words, upL_t tds) const {
    return estimate_of(plan(precision_words, tds));
}

lumo::BigFloat<std::uint64_t> GammaConstant::compute(const ComputeContext& context) const {
    print_title(context, algorithm().name);
    return plan(context.precision_words, context.parallel.tds).run(scratch_of(context), context.status);
}

}  // namespace velmora
