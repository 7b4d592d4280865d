/// What the powers share: their checks, and the walk over the bits of an exponent.
#pragma once

#include <bit>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/status/status_node.h"

namespace lumo {

inline void require_power_plan(const char* location, upL_t p, upL_t planned_p, upL_t tds, upL_t planned_tds) {
    if (p > planned_p) throw LimitExceededException(location, "Precision", planned_p, p);
    if (tds > planned_tds) throw LimitExceededException(location, "Task Decomposition", planned_tds, tds);
}

inline void report_exponent(StatusNode& status, upL_t exponent) {
    status.set_status({{'Y', " " + Console::format_commas(exponent)}});
}

/// For n >= 2: square() for each bit behind the leading one, multiply() after it where the bit is set.
/// Reports the exponent reached.
template <typename Square, typename Multiply>
void walk_exponent(StatusNode* status, upL_t n, const Square& square, const Multiply& multiply) {
    for (int bit = std::bit_width(n) - 2; bit >= 0; bit--) {
        if (status != nullptr) report_exponent(*status, n >> (bit + 1));
        square();
        if ((n >> bit & 1) == 0) continue;
        multiply();
        if (status != nullptr) report_exponent(*status, n >> bit);
    }
}

}  // namespace lumo
