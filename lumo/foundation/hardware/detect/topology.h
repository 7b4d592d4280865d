/// Logical cores, physical cores and sockets.
#pragma once

#include <string>
#include <vector>

#include "lumo/foundation/hardware/detect/system_files.h"

namespace lumo {

struct LogicalCore {
    upL_t processor;    ///< number of the operating system
    upL_t physical_id;  ///< socket
    upL_t core_id;      ///< within the socket
};

struct CpuTopology {
    std::vector<LogicalCore> cores;
    std::vector<std::string> names;  ///< of the processors, each once
    upL_t base_frequency = 0;        ///< in Hz; 0 if unknown

    upL_t logical_cores() const { return cores.size(); }
    upL_t physical_cores() const;
    upL_t sockets() const;
};

/// Parses the text of /proc/cpuinfo. No cores if it names none. A core without ids is a physical core of its
/// own in socket 0.
CpuTopology parse_cpuinfo(const std::string& text);
/// What is assumed when nothing can be read: the online cores, each physical, in one socket.
CpuTopology fallback_topology();
/// Reads the machine's. Warns and falls back if that fails.
CpuTopology read_cpu_topology(const SystemPaths& paths);

/// The order in which threads are pinned to cores: the first logical core of each physical core, then the
/// second ones, and so on; ascending among equals.
std::vector<upL_t> static_pin_order(const CpuTopology& topology);

}  // namespace lumo
