#include "lumo/foundation/hardware/detected_hardware.h"

#include "lumo/foundation/hardware/cpuid.h"

namespace lumo {

namespace {

std::string plural(upL_t n, const char* noun) {
    return std::to_string(n) + " " + noun + (n == 1 ? "" : "s");
}

NumaNode whole_machine(const CpuTopology& topology, const MemorySizes& memory) {
    NumaNode node;
    for (const LogicalCore& core : topology.cores) node.cores.push_back(core.processor);
    node.memory_bytes = memory.total;
    return node;
}

}  // namespace

std::vector<upL_t> DetectedHardware::memory_nodes() const {
    std::vector<upL_t> numbers;
    for (const NumaNode& node : numa_nodes)
        if (node.has_memory) numbers.push_back(node.number);
    return numbers;
}

std::string DetectedHardware::short_form() const {
    return plural(topology.logical_cores(), "thread") + " / " + plural(topology.physical_cores(), "core") +
           " / " + plural(topology.sockets(), "socket");
}

DetectedHardware detect_hardware(const DetectionSettings& settings) {
    const auto tell = [&](std::string_view text) {
        if (settings.status) settings.status(text);
    };
    DetectedHardware hardware;
    tell("Parsing Core -> Handle Mappings.");
    hardware.topology = read_cpu_topology(settings.paths);
    if (hardware.topology.names.empty())
        if (std::string brand = read_cpuid().brand; !brand.empty()) hardware.topology.names.push_back(brand);
    hardware.memory = read_memory_sizes(settings.paths);
    tell("Parsing NUMA -> Core Mappings...");
    hardware.numa_nodes = read_numa_nodes(settings.paths);
    if (hardware.numa_nodes.empty())
        hardware.numa_nodes.push_back(whole_machine(hardware.topology, hardware.memory));
    hardware.strings = read_system_strings(settings.paths, settings.show_pii);
    return hardware;
}

}  // namespace lumo
