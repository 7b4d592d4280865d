/// Placement of pages on NUMA nodes, by the system calls themselves.
#pragma once

#include <optional>

#include "lumo/foundation/memory/allocators/page_policy.h"

namespace lumo {

/// While it lives, pages that the calling thread touches first come from the node.
class ThreadMemoryNode {
 public:
    explicit ThreadMemoryNode(upL_t node);
    ~ThreadMemoryNode();
    ThreadMemoryNode(const ThreadMemoryNode&) = delete;
    ThreadMemoryNode& operator=(const ThreadMemoryNode&) = delete;
    bool bound() const { return is_bound; }

 private:
    bool is_bound;
};

/// Pages of the region that are not touched yet will come from the node. False if the system refuses.
bool bind_region(void* pointer, upL_t bytes, upL_t node);

/// Bytes of the region on each node, ascending by node, by looking at one page in each `stride` bytes (a
/// multiple of the page size). Nothing if the system does not tell.
std::optional<std::vector<NodeBytes>> query_nodes(void* pointer, upL_t bytes, upL_t stride);

}  // namespace lumo
