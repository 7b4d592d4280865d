/// The machine as a validation file tells of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lumo/foundation/hardware/detected_hardware.h"

namespace velmora {

/// Processors, topology, memory and frequency. "Unable to Detect" stands where a value is missing.
std::vector<std::string> machine_lines(const lumo::DetectedHardware& hardware);
/// The name of the user that runs this process; "Unknown" if the system has none.
std::string user_name();
/// Memory errors that the machine has corrected since it was started; nothing if it does not count them.
std::optional<lumo::upL_t> corrected_memory_errors(const lumo::SystemPaths& paths = {});

}  // namespace velmora
