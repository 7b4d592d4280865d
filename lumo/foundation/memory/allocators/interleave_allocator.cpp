#include "lumo/foundation/memory/allocators/interleave_allocator.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/hardware/detect/numa.h"
#include "lumo/foundation/memory/allocators/numa_memory.h"
#include "lumo/foundation/memory/allocators/page_mapping.h"

namespace lumo {

namespace {

constexpr upL_t STRETCH_BYTES = LARGE_PAGE_BYTES;

std::vector<upL_t> existing_nodes() {
    std::vector<upL_t> numbers;
    for (const NumaNode& node : read_numa_nodes({}))
        if (node.has_memory) numbers.push_back(node.number);
    return numbers;
}

}  // namespace

void touch_interleaved(void* pointer, upL_t bytes, const std::vector<upL_t>& nodes, bool hashed,
                       const std::vector<upL_t>& existing, const ParallelContext& context) {
    std::vector<upL_t> distinct = nodes;
    std::sort(distinct.begin(), distinct.end());
    distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
    const upL_t stretches = (bytes + STRETCH_BYTES - 1) / STRETCH_BYTES;
    // The work of each node is cut into slices for several threads.
    const upL_t slices = std::max<upL_t>(context.tds / distinct.size(), 1);
    parallel_for(*context.parallelizer, 0, distinct.size() * slices, [&](upL_t i) {
        const upL_t node = distinct[i / slices];
        const upL_t slice = i % slices;
        const ThreadMemoryNode policy(node);
        if (!policy.bound() && slice == 0 &&
            std::find(existing.begin(), existing.end(), node) != existing.end())
            Console::print_error("Interleaved allocation failed to bind to node " + std::to_string(node));
        for (upL_t s = slice * stretches / slices; s < (slice + 1) * stretches / slices; s++) {
            if (nodes[interleaved_node(s, nodes.size(), hashed)] != node) continue;
            const upL_t from = s * STRETCH_BYTES;
            touch_part(pointer, bytes, from, std::min(from + STRETCH_BYTES, bytes));
        }
    });
}

upL_t interleaved_node(upL_t stretch, upL_t nodes, bool hashed) {
    if (!hashed) return stretch % nodes;
    // Multiplicative hashing; the top bits, scaled to the number of nodes.
    const upL_t hash = (stretch * 0x9e3779b97f4a7c15u) >> 32;
    return hash * nodes >> 32;
}

std::unique_ptr<BufferAllocator> InterleaveAllocator::clone() const {
    return std::make_unique<InterleaveAllocator>(*this);
}

BufferBlock InterleaveAllocator::allocate(upL_t bytes, const ParallelContext& context) const {
    BufferBlock block;
    MappedRegion region = map_joinable_pages(bytes);
    if (region.pointer == nullptr) {
        block.error = "Insufficient Memory.";
        return block;
    }
    const std::vector<upL_t> existing = existing_nodes();
    if (existing.size() <= 1)
        touch_pages(region.pointer, region.mapped_bytes, context);  // nothing to choose from
    else
        touch_interleaved(region.pointer, region.mapped_bytes, nodes.empty() ? existing : nodes, hashed,
                          existing, context);

    block.pointer = region.pointer;
    block.bytes = bytes;
    block.pages.bytes = region.mapped_bytes;
    block.pages.page_bytes = SMALL_PAGE_BYTES;
    if (locked_pages != PagePolicy::DISABLED)
        block.pages.locked_bytes = lock_pages(region.pointer, region.mapped_bytes);
    block.pages.nodes =
        query_nodes(region.pointer, region.mapped_bytes, STRETCH_BYTES).value_or(std::vector<NodeBytes>());
    if (locked_pages == PagePolicy::FORCED && block.pages.locked_bytes < region.mapped_bytes) {
        unmap_pages(region);
        block = {};
        block.error = "Unable to force locked pages.";
    }
    return block;
}

void InterleaveAllocator::release(BufferBlock& block) const {
    MappedRegion region{block.pointer, block.pages.bytes};
    unmap_pages(region);
    block = {};
}

}  // namespace lumo
