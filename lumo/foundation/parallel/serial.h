/// The framework "none".
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

/// Runs everything on the caller, in ascending order. An exception leaves the rest undone.
class SerialParallelizer final : public BasicParallelizer {
 public:
    using BasicParallelizer::run_in_parallel;
    void run_in_parallel(BasicAction& a, BasicAction& b) override;
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override;
};

}  // namespace lumo
