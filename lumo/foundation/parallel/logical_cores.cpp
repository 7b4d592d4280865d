#include "lumo/foundation/parallel/logical_cores.h"

#include <unistd.h>

namespace lumo {

upL_t logical_core_count() {
    const long cores = sysconf(_SC_NPROCESSORS_ONLN);
    return cores < 1 ? 1 : static_cast<upL_t>(cores);
}

}  // namespace lumo
