/// The detected machine as a file beside the program, `environment.cfg`, read in place of detection.
#pragma once

#include "lumo/foundation/config/value.h"
#include "lumo/foundation/hardware/detected_hardware.h"

namespace lumo {

/// Adds the root key `DetectedHardware`. What identifies the one machine is left out.
void hardware_to_cfg(const DetectedHardware& hardware, Config::Object& root);
/// Throws ParseException or InvalidParametersException for an object that describes no machine.
DetectedHardware hardware_from_cfg(const Config::Object& root);

/// Throws FileIO::FileException if the file cannot be written.
void save_environment(const DetectedHardware& hardware, const std::string& path);
/// Loads the file if there is one, and detects the machine otherwise. A file that cannot be used is told as a
/// warning and passed over.
DetectedHardware load_or_detect_hardware(const std::string& path, const DetectionSettings& settings = {});

}  // namespace lumo
