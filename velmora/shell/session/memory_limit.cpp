#include "velmora/shell/session/memory_limit.h"

#include <algorithm>

namespace velmora {

upL_t memory_limit(const lumo::DetectedHardware& hardware, const lumo::SystemPaths& paths) {
    upL_t limit = hardware.memory.total;
    // Version 2 of control groups, then version 1. "max" is no number: there is no limit.
    for (const char* file : {"/fs/cgroup/memory.max", "/fs/cgroup/memory/memory.limit_in_bytes"}) {
        const auto bytes = lumo::parse_leading_number(lumo::read_system_line(paths.sys + file));
        if (bytes && *bytes > 0) limit = limit == 0 ? *bytes : std::min(limit, *bytes);
    }
    return limit;
}

}  // namespace velmora
