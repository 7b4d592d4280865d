/// Owners of the blocks that computations live in.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/memory/allocators/buffer_allocator.h"
#include "lumo/foundation/memory/heap/buffer_heap.h"

namespace lumo {

/// Owns one block of an allocator. The allocator is copied: its settings may change later.
class LargeBuffer {
 public:
    LargeBuffer() = default;
    /// Throws MemoryAllocationFailedException "LargeBuffer()" with the allocator's reason; "Insufficient
    /// Address Space" for sizes that no process can have. No block is taken for 0 bytes.
    LargeBuffer(const BufferAllocator& allocator, upL_t bytes, const ParallelContext& context = {});
    LargeBuffer(LargeBuffer&& other) noexcept;
    LargeBuffer& operator=(LargeBuffer&& other) noexcept;
    ~LargeBuffer() { reset(); }

    /// The whole block; its contents are arbitrary.
    AlignedBufferC buffer() const { return AlignedBufferC(block.pointer, block.bytes); }
    upL_t size() const { return block.bytes; }
    const PageAllocation& pages() const { return block.pages; }
    void reset();

 private:
    std::unique_ptr<BufferAllocator> allocator;
    BufferBlock block;
};

/// A heap over a block of its own.
class LargeHeap {
 public:
    LargeHeap(const BufferAllocator& allocator, upL_t bytes, const ParallelContext& context = {});
    BufferHeap& heap() { return inner; }
    const PageAllocation& pages() const { return buffer.pages(); }

 private:
    LargeBuffer buffer;
    BufferHeap inner;
};

/// Makes the heap of a computation and prints what came of it. A size of 0 gives a heap of no bytes. Without
/// memory it prints so and ends the program.
std::unique_ptr<LargeHeap> make_large_heap(const BufferAllocator& allocator, upL_t bytes,
                                           const ParallelContext& context = {});

}  // namespace lumo
