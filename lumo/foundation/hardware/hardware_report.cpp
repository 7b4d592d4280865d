#include "lumo/foundation/console/console.h"
#include "lumo/foundation/hardware/detected_hardware.h"

namespace lumo {

namespace {

constexpr char VALUE_COLOR = 'Y';

void row(const char* label, const std::string& value) {
    Console::print(label);
    Console::print_line(value.empty() ? "Unable to Detect" : value, VALUE_COLOR);
}

std::string bytes_or_nothing(upL_t bytes) {
    return bytes == 0 ? "" : Console::format_bytes(bytes);
}

}  // namespace

void print_hardware_report(const DetectedHardware& hardware) {
    std::lock_guard lock(Console::lock());
    const CpuTopology& topology = hardware.topology;
    Console::print_line("Processor(s):");
    for (const std::string& name : topology.names) Console::print_line("    " + name, VALUE_COLOR);
    if (topology.names.empty()) Console::print_line("    Unable to Detect", VALUE_COLOR);
    row("    Logical Cores:     ", Console::format_commas(topology.logical_cores()));
    row("    Physical Cores:    ", Console::format_commas(topology.physical_cores()));
    row("    Sockets:           ", Console::format_commas(topology.sockets()));
    row("    NUMA Nodes:        ", Console::format_commas(upL_t(hardware.numa_nodes.size())));
    row("    Base Frequency:    ",
        topology.base_frequency == 0 ? "" : Console::format_commas(topology.base_frequency) + " Hz");
    Console::new_line();
    Console::print_line("Memory:");
    row("    Total Memory:      ", bytes_or_nothing(hardware.memory.total));
    row("    Usable Memory:     ", bytes_or_nothing(hardware.memory.usable));
    row("    DIMM:              ", "");  // needs the firmware's tables, which only the superuser can read
    Console::new_line();
    Console::print_line("Motherboard:");
    row("    Manufacturer:      ", hardware.strings.manufacturer);
    row("    Model:             ", hardware.strings.model);
    row("    Name:              ", hardware.strings.board_name);
    row("    Version:           ", hardware.strings.version);
    row("    Serial Number:     ", hardware.strings.serial_number);
    Console::new_line();
    row("Operating System:      ", hardware.strings.operating_system);
}

}  // namespace lumo
