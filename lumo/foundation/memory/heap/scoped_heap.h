/// Heaps that live for a scope.
#pragma once

#include "lumo/foundation/memory/heap/buffer_heap.h"

namespace lumo {

/// A heap over a region taken from a parent, or from the general allocator when that is null.
///
/// Blocks that survive the scope are handed over to the parent; without a parent they are told as a leak and
/// their storage is freed all the same.
class ScopedHeap {
 public:
    /// Fatal "Memory Allocation Failure." when the owner has no room for heap_block_bytes(bytes, 128).
    ScopedHeap(BufferHeap* owner, upL_t bytes) : ScopedHeap(owner, bytes, true) {}
    ScopedHeap(const ScopedHeap&) = delete;
    ScopedHeap& operator=(const ScopedHeap&) = delete;
    ~ScopedHeap();
    BufferHeap& heap() { return inner; }

 private:
    friend class ScopedHeapPair;

    BufferHeap* const parent;
    const bool raises_requirement;  ///< a pair does it for both
    const upL_t parent_usage;       ///< before the region was taken
    const upL_t parent_requirement;
    void* const region;
    BufferHeap inner;

    ScopedHeap(BufferHeap* owner, upL_t bytes, bool counts);
    void unlink();
};

/// Two heaps of equal size for two tasks that run in parallel, carved before the dispatch. On closing, the
/// parent's requirement becomes what it stood at plus twice the larger peak.
class ScopedHeapPair {
 public:
    ScopedHeapPair(BufferHeap& parent, upL_t bytes_each);
    ~ScopedHeapPair();
    BufferHeap& first() { return a.heap(); }
    BufferHeap& second() { return b.heap(); }

 private:
    BufferHeap& parent;
    const upL_t base_requirement;
    ScopedHeap a;
    ScopedHeap b;
};

}  // namespace lumo
