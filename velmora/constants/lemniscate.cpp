#include "velmora/constants/lemniscate.h"

#include "velmora/constants/planned_constant.h"
#include "velmora/constants/series/series_arcsinlemn.h"

namespace velmora {

namespace {

template <typename wtype>
void add_term(SeriesSum_BigFloatR<wtype>& sum, std::int64_t c, std::int64_t x, std::int64_t y) {
    sum.add(c, std::to_string(c) + " * ArcSinlemn(" + std::to_string(x) + "/" + std::to_string(y) + ")",
            make_arcsinlemn_series<wtype>(x, y), arcsinlemn_coefficients(x, y));
}

}  // namespace

template <typename wtype>
SeriesSum_BigFloatR<wtype> Lemniscate_Machin_BigFloatR(LemniscateFormula formula, upL_t p, upL_t tds) {
    SeriesSum_BigFloatR<wtype> sum(p, tds);
    if (formula == LemniscateFormula::gauss) {
        add_term(sum, 8, 1, 2);
        add_term(sum, 4, 7, 23);
    } else {
        add_term(sum, 8, 2, 3);
        add_term(sum, -4, 7, 137);
    }
    return sum;
}

template SeriesSum_BigFloatR<std::uint32_t> Lemniscate_Machin_BigFloatR(LemniscateFormula, upL_t, upL_t);
template SeriesSum_BigFloatR<std::uint64_t> Lemniscate_Machin_BigFloatR(LemniscateFormula, upL_t, upL_t);

std::unique_ptr<Constant> LemniscateConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<LemniscateConstant>(entry);
}

template <typename Use>
auto LemniscateConstant::with_plan(upL_t precision_words, upL_t tds, Use use) const {
    const std::string_view token = algorithm().token;
    if (token == "agm-pi") return use(Lemniscate_AGM_BigFloatR<std::uint64_t>(1, precision_words, tds));
    return use(Lemniscate_Machin_BigFloatR<std::uint64_t>(
        token == "sebah" ? LemniscateFormula::sebah : LemniscateFormula::gauss, precision_words, tds));
}

upL_t LemniscateConstant::terms(upL_t precision_words) const {
    return with_plan(precision_words, 1, [](const auto& plan) { return plan.terms(); });
}

SizeEstimate LemniscateConstant::estimate(upL_t precision_words, upL_t tds) const {
    return with_plan(precision_words, tds, [](const auto& plan) { return estimate_of(plan); });
}

lumo::BigFloat<std::uint64_t> LemniscateConstant::compute(const ComputeContext& context) const {
    print_title(context, *algorithm().run_title == '\0' ? algorithm().name : algorithm().run_title);
    return with_plan(context.precision_words, context.parallel.tds,
                     [&](const auto& plan) { return plan.run(scratch_of(context), context.status); });
}

}  // namespace velmora
