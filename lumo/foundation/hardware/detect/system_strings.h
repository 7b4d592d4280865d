/// Memory sizes and descriptive strings of the machine.
#pragma once

#include <string>

#include "lumo/foundation/hardware/detect/system_files.h"

namespace lumo {

struct MemorySizes {
    upL_t total = 0;   ///< bytes; 0 if unknown
    upL_t usable = 0;  ///< bytes that can be taken without swapping; 0 if unknown
};
/// Parses the text of /proc/meminfo.
MemorySizes parse_meminfo(const std::string& text);
MemorySizes read_memory_sizes(const SystemPaths& paths);

/// An empty string was not detected.
struct SystemStrings {
    std::string manufacturer, model, board_name, version, serial_number;  ///< of the motherboard
    std::string operating_system;
    std::string clock_source;
};
/// What identifies the one machine (its serial number) is read only if `show_pii` is set.
SystemStrings read_system_strings(const SystemPaths& paths, bool show_pii);

}  // namespace lumo
