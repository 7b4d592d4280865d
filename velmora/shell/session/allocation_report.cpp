#include "velmora/shell/session/allocation_report.h"

#include "lumo/foundation/memory/allocators/interleave_allocator.h"
#include "lumo/foundation/memory/allocators/mmap_allocator.h"

namespace velmora {

std::vector<std::string> allocation_shortfalls(const lumo::BufferAllocator& allocator,
                                               const lumo::PageAllocation& pages) {
    using lumo::PagePolicy;
    PagePolicy large = PagePolicy::DISABLED;
    PagePolicy locked = PagePolicy::DISABLED;
    if (const auto* mmap = dynamic_cast<const lumo::MmapAllocator*>(&allocator)) {
        large = mmap->large_pages;
        locked = mmap->locked_pages;
    } else if (const auto* interleave = dynamic_cast<const lumo::InterleaveAllocator*>(&allocator)) {
        locked = interleave->locked_pages;
    }
    std::vector<std::string> lines;
    if (large != PagePolicy::DISABLED && pages.large_page_bytes < pages.bytes)
        lines.push_back("Unable to allocate large pages.");
    if (locked != PagePolicy::DISABLED && pages.locked_bytes < pages.bytes)
        lines.push_back("Unable to lock pages.");
    return lines;
}

}  // namespace velmora
