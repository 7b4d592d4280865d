#include "velmora/constants/series_constant.h"

#include "velmora/constants/planned_constant.h"

namespace velmora {

upL_t SeriesConstant::terms(upL_t precision_words) const {
    return plan(precision_words, 1).terms();
}

SizeEstimate SeriesConstant::estimate(upL_t precision_words, upL_t tds) const {
    return estimate_of(plan(precision_words, tds));
}

lumo::BigFloat<std::uint64_t> SeriesConstant::compute(const ComputeContext& context) const {
    print_title(context, *algorithm().run_title == '\0' ? algorithm().name : algorithm().run_title);
    return plan(context.precision_words, context.parallel.tds).run(scratch_of(context), context.status);
}

}  // namespace velmora
