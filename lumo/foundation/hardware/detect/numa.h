/// NUMA nodes: their cores and their memory.
#pragma once

#include <map>
#include <vector>

#include "lumo/foundation/hardware/detect/system_files.h"

namespace lumo {

struct NumaNode {
    upL_t number = 0;
    std::vector<upL_t> cores;
    upL_t memory_bytes = 0;  ///< 0 if unknown
    bool has_memory = true;
};

/// Bytes of each node by the "present" pages of its zones in the text of /proc/zoneinfo.
std::map<upL_t, upL_t> parse_zoneinfo(const std::string& text, upL_t page_bytes);

/// Ascending by number. Empty if the kernel shows no nodes. Warns when it cannot be told which have memory.
std::vector<NumaNode> read_numa_nodes(const SystemPaths& paths);

}  // namespace lumo
