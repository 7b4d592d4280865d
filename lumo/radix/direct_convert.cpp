#include "lumo/radix/direct_convert.h"

#include "lumo/foundation/errors/fatal.h"
#include "lumo/radix/cbrv2/fraction_view.h"
#include "lumo/radix/cbrv2/leaf_convert.h"
#include "lumo/radix/cbrv2/recursion.h"

namespace lumo {

template <typename wtype>
wtype DirectConvertB<wtype>::run(const ConvertPlanP<wtype>& plan, StatusNode& status, wtype* out, upL_t count,
                                 const BigFloat<wtype>& value, const MultiplyContext& ctx,
                                 ConversionProbe<wtype>* probe) {
    require(count <= plan.length, "Input size is too large for conversion plan.", "DirectConvertB::run()");
    require_capacity("DirectConvertB::run()", ctx.scratch_bytes, plan.total_bytes);
    if (count == 0) return 0;
    wtype* const out_end = out + count;
    if (plan.radix >> plan.twos == 1) {
        wtype overlap = convert_bits(plan.twos, out_end, count, value, ctx.parallel());
        if (probe) probe->converted(out, count, overlap);
        return overlap;
    }

    AlignedBufferC buffer = ctx.buffer();
    const PowerTable<wtype> table(plan, status, ctx, buffer, probe);
    StatusSection section(status, {{'G', "Converting...  "}});
    const auto progress = status.make_iteration(count);
    const BigFloat<wtype> fraction = words_between(value, value.exp, 0);
    const auto result =
        CBRv2<wtype>(plan, table, probe)
            .convert_T(*progress, ctx.with_scratch(buffer), out_end, count, plan.rows.size(), fraction);
    // A value within the error of 0 or 1 may come out beyond it, reduced modulo 1.
    if (result.carry > 0) bp_fill<wtype>(out, count, static_cast<wtype>(plan.radix - 1), ctx.parallel());
    if (result.carry < 0) bp_zero<wtype>(out, count, ctx.parallel());
    return result.overlap;
}

template struct DirectConvertB<std::uint32_t>;
template struct DirectConvertB<std::uint64_t>;

}  // namespace lumo
