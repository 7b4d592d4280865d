/// Placement of pages on NUMA nodes, by the system calls themselves.
#pragma once

#include <array>
#include <optional>

#include "lumo/foundation/memory/allocators/page_policy.h"

namespace lumo {

/// While it lives, pages that the calling thread touches first come from the node. Its end brings back the
/// policy that stood before.
class ThreadMemoryNode {
 public:
    explicit ThreadMemoryNode(upL_t node);
    ~ThreadMemoryNode();
    ThreadMemoryNode(const ThreadMemoryNode&) = delete;
    ThreadMemoryNode& operator=(const ThreadMemoryNode&) = delete;
    bool bound() const { return is_bound; }

 private:
    using Mask = std::array<unsigned long, 16>;  ///< a bit for each of the 1024 nodes the system can have
    int old_mode = 0;
    Mask old_nodes{};
    bool is_bound = false;
};

/// Pages of the region that are not touched yet will come from the node. False if the system refuses.
bool bind_region(void* pointer, upL_t bytes, upL_t node);

/// Bytes of the region on each node, ascending by node, by looking at one page in each `stride` bytes (a
/// multiple of the page size). Nothing if the system does not tell.
std::optional<std::vector<NodeBytes>> query_nodes(void* pointer, upL_t bytes, upL_t stride);

}  // namespace lumo
