/// A machine with a fault of its memory.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo::testing {

/// Runs serially. Flips a bit of a word just before its second dispatch.
template <typename wtype>
class FaultyMachine final : public BasicParallelizer {
 public:
    explicit FaultyMachine(wtype& victim) : word(victim) {}
    using BasicParallelizer::run_in_parallel;
    void run_in_parallel(BasicAction& a, BasicAction& b) override {
        serial_parallelizer().run_in_parallel(a, b);
    }
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override {
        if (++dispatches == 2) word ^= wtype(1) << 7;
        serial_parallelizer().run_in_parallel(action, start, end);
    }

 private:
    wtype& word;
    int dispatches = 0;
};

}  // namespace lumo::testing
