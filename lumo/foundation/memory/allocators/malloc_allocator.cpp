#include "lumo/foundation/memory/allocators/malloc_allocator.h"

#include <new>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/foundation/memory/allocators/page_mapping.h"

namespace lumo {

std::unique_ptr<BufferAllocator> MallocAllocator::clone() const {
    return std::make_unique<MallocAllocator>(*this);
}

BufferBlock MallocAllocator::allocate(upL_t bytes, const ParallelContext&) const {
    BufferBlock block;
    try {
        block.pointer = aligned_malloc(bytes, SMALL_PAGE_BYTES);
        block.bytes = block.pages.bytes = bytes;
    } catch (const std::bad_alloc&) {
        block.error = "Insufficient Memory.";
    }
    return block;
}

void MallocAllocator::release(BufferBlock& block) const {
    try {
        aligned_free(block.pointer);
    } catch (const Exception& damage) {
        damage.print();
        exit_with_pause(1);
    }
    block = {};
}

}  // namespace lumo
