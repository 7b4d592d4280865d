#include "lumo/foundation/memory/allocators/numa_memory.h"

#include <linux/mempolicy.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>

namespace lumo {

namespace {

constexpr upL_t MAX_NODES = 1024;  // of the kernel
constexpr upL_t BITS = 8 * sizeof(unsigned long);

struct NodeMask {
    explicit NodeMask(upL_t node) { words[node / BITS] = 1ul << (node % BITS); }
    std::array<unsigned long, MAX_NODES / BITS> words{};
};

}  // namespace

ThreadMemoryNode::ThreadMemoryNode(upL_t node) {
    if (node >= MAX_NODES) return;
    if (syscall(SYS_get_mempolicy, &old_mode, old_nodes.data(), MAX_NODES, nullptr, 0) != 0) return;
    const NodeMask mask(node);
    is_bound = syscall(SYS_set_mempolicy, MPOL_BIND, mask.words.data(), MAX_NODES + 1) == 0;
}

ThreadMemoryNode::~ThreadMemoryNode() {
    // The default policy names no nodes, and the call refuses an empty mask with it.
    if (is_bound && old_mode == MPOL_DEFAULT) syscall(SYS_set_mempolicy, MPOL_DEFAULT, nullptr, 0);
    if (is_bound && old_mode != MPOL_DEFAULT)
        syscall(SYS_set_mempolicy, old_mode, old_nodes.data(), MAX_NODES + 1);
}

bool bind_region(void* pointer, upL_t bytes, upL_t node) {
    if (node >= MAX_NODES) return false;
    const NodeMask mask(node);
    return syscall(SYS_mbind, pointer, bytes, MPOL_BIND, mask.words.data(), MAX_NODES + 1, 0) == 0;
}

std::optional<std::vector<NodeBytes>> query_nodes(void* pointer, upL_t bytes, upL_t stride) {
    constexpr upL_t BATCH = 1024;
    std::array<void*, BATCH> pages;
    std::array<int, BATCH> status;
    std::map<upL_t, upL_t> totals;
    for (upL_t at = 0; at < bytes;) {
        const upL_t batch_start = at;
        upL_t count = 0;
        for (; count < BATCH && at < bytes; count++, at += stride)
            pages[count] = static_cast<char*>(pointer) + at;
        // Without target nodes the call moves nothing and tells where the pages are.
        if (syscall(SYS_move_pages, 0, count, pages.data(), nullptr, status.data(), 0) != 0)
            return std::nullopt;
        for (upL_t i = 0; i < count; i++) {
            if (status[i] < 0) continue;
            totals[upL_t(status[i])] += std::min(stride, bytes - batch_start - i * stride);
        }
    }
    std::vector<NodeBytes> nodes;
    for (const auto& [node, share] : totals) nodes.push_back({node, share});
    return nodes;
}

}  // namespace lumo
