/// Conversion of a binary fraction in memory to words of another radix, named CBRv2.
///
/// Recursive splitting over a table of powers, without division. Source: Brent and Zimmermann, "Modern
/// Computer Arithmetic" (2010), section 1.7; each product is computed only over the window of its fraction.
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float.h"
#include "lumo/radix/conversion_probe.h"
#include "lumo/radix/convert_plan.h"

namespace lumo {

template <typename wtype>
struct DirectConvertB {
    /// out[0 .. count) := the first `count` words of radix plan.radix after the point of `value`, the most
    /// significant at out[count - 1]; returns the overlap word, an estimate of the one that follows out[0].
    ///
    /// The integer part and the sign of the value are ignored. The result read as an integer may differ by
    /// one from Floor(fraction x R^count): callers ask for guard words below those they use. ctx.tds <=
    /// plan.tds; ctx.scratch holds plan.total_bytes. `out` overlaps neither value nor scratch.
    ///
    /// Asserts count <= plan.length ("Input size is too large for conversion plan.").
    /// AlgorithmFailedException "Power Hash Mismatch" when a power of the table is not what its exponent
    /// tells, "Overlap Mismatch:" when two halves disagree on the word that they share.
    static wtype run(const ConvertPlanP<wtype>& plan, StatusNode& status, wtype* out, upL_t count,
                     const BigFloat<wtype>& value, const MultiplyContext& ctx,
                     ConversionProbe<wtype>* probe = nullptr);
};

}  // namespace lumo
