#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

namespace {

class SerialParallelizer final : public BasicParallelizer {
 public:
    using BasicParallelizer::run_in_parallel;
    void run_in_parallel(BasicAction& a, BasicAction& b) override {
        a.run(0);
        b.run(0);
    }
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override {
        for (upL_t index = start; index < end; index++) action.run(index);
    }
};

}  // namespace

BasicParallelizer& serial_parallelizer() {
    // Never destroyed: contexts in static objects may refer to it until the very end.
    static BasicParallelizer& parallelizer = *new SerialParallelizer;
    return parallelizer;
}

}  // namespace lumo
