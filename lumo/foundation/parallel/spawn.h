/// The framework "spawn": a new thread for every task.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

class SpawnParallelizer final : public BasicParallelizer {
 public:
    explicit SpawnParallelizer(upL_t max_sequential_dispatch);
    using BasicParallelizer::run_in_parallel;
    void run_in_parallel(BasicAction& a, BasicAction& b) override;
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override;

 private:
    const upL_t max_sequential;
};

}  // namespace lumo
