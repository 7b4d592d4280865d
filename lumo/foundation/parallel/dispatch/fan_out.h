/// Recursive fan-out: a dispatcher that issues its tasks one after another has a critical path as long as the
/// list, so long lists are cut into blocks whose own tasks issue the rest.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

inline constexpr upL_t DEFAULT_MAX_SEQUENTIAL_DISPATCH = 64;
inline constexpr upL_t SMALLEST_MAX_SEQUENTIAL_DISPATCH = 4;

/// How `indices` (at least 2) are cut: `blocks` blocks of `length`, the last ones perhaps shorter or empty.
struct FanOutShape {
    FanOutShape(upL_t indices, upL_t max_sequential);
    upL_t blocks;  ///< at most max_sequential
    upL_t length;
};

/// Runs [start, end) through `parallelizer` so that no dispatch issues more than `max_sequential` tasks (4 at
/// least, and the parallelizer's own limit must be as large).
void run_with_fan_out(BasicParallelizer& parallelizer, BasicAction& action, upL_t start, upL_t end,
                      upL_t max_sequential);

}  // namespace lumo
