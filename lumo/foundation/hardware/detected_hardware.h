/// What the program knows of its machine.
#pragma once

#include <functional>

#include "lumo/foundation/hardware/detect/numa.h"
#include "lumo/foundation/hardware/detect/system_strings.h"
#include "lumo/foundation/hardware/detect/topology.h"

namespace lumo {

/// Built on the main thread during start-up, read-only after it.
struct DetectedHardware {
    CpuTopology topology;
    std::vector<NumaNode> numa_nodes;  ///< at least one
    MemorySizes memory;
    SystemStrings strings;

    /// Numbers of the nodes that have memory, ascending.
    std::vector<upL_t> memory_nodes() const;
    /// "8 threads / 4 cores / 1 socket".
    std::string short_form() const;
};

struct DetectionSettings {
    SystemPaths paths;
    bool show_pii = false;
    /// Told of the steps that are slow on large machines.
    std::function<void(std::string_view)> status = {};
};

/// Warns on the error channel about what cannot be read and goes on with less.
DetectedHardware detect_hardware(const DetectionSettings& settings = {});

/// Prints the report of the machine; "Unable to Detect" stands for what is missing.
void print_hardware_report(const DetectedHardware& hardware);

}  // namespace lumo
