#include "lumo/foundation/parallel/serial.h"

namespace lumo {

void SerialParallelizer::run_in_parallel(BasicAction& a, BasicAction& b) {
    a.run(0);
    b.run(0);
}

void SerialParallelizer::run_in_parallel(BasicAction& action, upL_t start, upL_t end) {
    for (upL_t index = start; index < end; index++) action.run(index);
}

BasicParallelizer& serial_parallelizer() {
    // Never destroyed: contexts in static objects may refer to it until the very end.
    static BasicParallelizer& parallelizer = *new SerialParallelizer;
    return parallelizer;
}

}  // namespace lumo
