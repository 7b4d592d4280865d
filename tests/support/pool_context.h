/// Ways to run a loop over words: pieces over a real pool of threads.
#pragma once

#include "lumo/foundation/parallel/pushpool.h"

namespace lumo {

namespace testing {

inline constexpr upL_t ALL_TDS[] = {1, 2, 3, 16, 100};

inline ParallelContext pool_context(upL_t tds) {
    return {tds, &process_parallelizer()};
}

}  // namespace testing
}  // namespace lumo
