#include "lumo/foundation/memory/allocators/mmap_allocator.h"

#include "lumo/foundation/memory/allocators/numa_memory.h"
#include "lumo/foundation/memory/allocators/page_mapping.h"

namespace lumo {

std::unique_ptr<BufferAllocator> MmapAllocator::clone() const {
    return std::make_unique<MmapAllocator>(*this);
}

BufferBlock MmapAllocator::allocate(upL_t bytes, const ParallelContext& context) const {
    BufferBlock block;
    MappedRegion region = map_pages(bytes, large_pages != PagePolicy::DISABLED);
    if (region.pointer == nullptr) {
        block.error = "Insufficient Memory or Invalid Node.";
        return block;
    }
    if (node && !bind_region(region.pointer, region.mapped_bytes, *node)) {
        unmap_pages(region);
        block.error = "Insufficient Memory or Invalid Node.";
        return block;
    }
    touch_pages(region.pointer, region.mapped_bytes, context);

    block.pointer = region.pointer;
    block.bytes = bytes;
    block.pages.bytes = region.mapped_bytes;
    block.pages.page_bytes = region.large_pages ? LARGE_PAGE_BYTES : SMALL_PAGE_BYTES;
    if (region.large_pages) block.pages.large_page_bytes = region.mapped_bytes;
    if (locked_pages != PagePolicy::DISABLED)
        block.pages.locked_bytes = lock_pages(region.pointer, region.mapped_bytes);
    if (node)
        block.pages.nodes = query_nodes(region.pointer, region.mapped_bytes, block.pages.page_bytes)
                                .value_or(std::vector<NodeBytes>());

    if (std::string fault = find_fault(block); !fault.empty()) {
        unmap_pages(region);
        block = {};
        block.error = std::move(fault);
    }
    return block;
}

std::string MmapAllocator::find_fault(const BufferBlock& block) const {
    const PageAllocation& pages = block.pages;
    if (node &&
        !(pages.nodes.size() == 1 && pages.nodes[0].node == *node && pages.nodes[0].bytes == pages.bytes))
        return "Unable to place all pages onto node " + std::to_string(*node) + ".";
    if (large_pages == PagePolicy::FORCED && pages.large_page_bytes < pages.bytes)
        return "Unable to force large pages.";
    if (locked_pages == PagePolicy::FORCED && pages.locked_bytes < pages.bytes)
        return "Unable to force locked pages.";
    return {};
}

void MmapAllocator::release(BufferBlock& block) const {
    MappedRegion region{block.pointer, block.pages.bytes};
    unmap_pages(region);
    block = {};
}

}  // namespace lumo
