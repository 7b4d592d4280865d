// How much memory a run in memory takes.

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/multiply.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/run_in_memory.h"

namespace velmora {

NormalFloatSessionB::NormalFloatSessionB(const lumo::DetectedHardware& hardware,
                                         std::unique_ptr<Constant> chosen)
    : NormalFloatSession(hardware, std::move(chosen)) {
    refresh();
}

void NormalFloatSessionB::refresh() {
    const upL_t p = precision_words();
    const upL_t tds = parallelism().task_decomposition();
    sizes = {};
    sizes.working_bytes = value_bytes(p);
    try {
        const SizeEstimate computing = constant().estimate(p, tds);
        const lumo::FloatWriterPlan writing(decimal_digits(), hex_digits(), tds);
        sizes.product_bits = std::max(computing.max_product_bits, 64 * writing.product_words);
        sizes.table_bytes = lumo::Multiply::table_bytes(sizes.product_bits);
        sizes.working_bytes =
            lumo::align_bytes(std::max(computing.working_bytes, value_bytes(p) + writing.scratch_bytes));
    } catch (const lumo::LimitExceededException& failure) {
        sizes.problem =
            "The computation is too large: it needs products that no algorithm can make. " + failure.message;
        if (failure.limit != lumo::LimitExceededException::UNKNOWN_LIMIT)
            sizes.problem += " (limit: " + lumo::Console::format_commas(failure.limit) + ")";
    }
}

}  // namespace velmora
