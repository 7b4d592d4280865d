#pragma once

#include "lumo/foundation/hardware/detected_hardware.h"

namespace velmora {

using lumo::upL_t;

/// Bytes that this process may have at most: the machine's memory, or less where the system gives its group
/// of processes a limit. 0 if unknown.
upL_t memory_limit(const lumo::DetectedHardware& hardware, const lumo::SystemPaths& paths = {});

}  // namespace velmora
