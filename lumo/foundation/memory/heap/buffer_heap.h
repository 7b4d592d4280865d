/// A stack-like heap in one large block, for storage whose sizes are only known as the work goes on.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Manages one contiguous region, which it does not own. A table of the active blocks grows down from the
/// region's end, so each block costs 16 bytes more than its size.
///
/// Not thread safe: a heap belongs to one task at a time. All sizes are bytes.
class BufferHeap {
 public:
    /// A heap of no bytes.
    BufferHeap() = default;
    /// The base must be a multiple of 8 (fatal "Alignment Error").
    BufferHeap(void* base, upL_t size);
    BufferHeap(const BufferHeap&) = delete;
    BufferHeap& operator=(const BufferHeap&) = delete;

    /// The first gap that holds `bytes` (rounded up to 8), or null. The block is aligned to 8 and unguarded
    /// and must be released by the end of a scoped heap; heap_alloc() is the guarded form.
    void* allocate(upL_t bytes);
    /// Fatal "Heap Inconsistency" unless a block starts there.
    void release(void* block_start);
    /// Grows the block in place. Fatal when the heap does not know it or the room above does not suffice.
    void expand(void* block_start, upL_t bytes);
    /// Closes the gap under a block, in multiples of `alignment` (a power of two; below 8 becomes 8), moving
    /// its words down. Returns how far the block moved.
    upL_t shrink_front(void* block_start, upL_t alignment);

    upL_t size() const { return end - base; }
    upL_t active_blocks() const { return count; }
    upL_t current_usage() const { return top - base; }
    upL_t peak_usage() const { return peak_top - base; }
    /// What a single large free block could hold behind the last one.
    upL_t free_at_top() const;
    bool contains(const void* pointer) const;

    /// What the heap would have needed so far had every pair of sub-heaps been given exactly its need.
    upL_t requirement() const { return required; }
    /// Takes the closing of two parallel sub-heaps into the requirement.
    void record_sub_heaps(upL_t base_requirement, upL_t peak_a, upL_t peak_b);

    /// Prints the "Heap Table Dump:".
    void dump() const;

 private:
    friend class ScopedHeap;

    struct Entry {
        std::uintptr_t address;
        upL_t bytes;
    };

    std::uintptr_t base = 0;
    std::uintptr_t end = 0;          ///< also the start of the table
    std::uintptr_t top = 0;          ///< one past the highest used address, or `base`
    std::uintptr_t table_limit = 0;  ///< lowest address of the table, at least `top`
    upL_t count = 0;
    upL_t peak_count = 0;
    std::uintptr_t peak_top = 0;
    upL_t required = 0;
    const BufferHeap* parent = nullptr;
    BufferHeap* first_child = nullptr;
    BufferHeap* next_sibling = nullptr;

    Entry& entry(upL_t i) { return reinterpret_cast<Entry*>(end)[-1 - static_cast<spL_t>(i)]; }
    const Entry& entry(upL_t i) const {
        return reinterpret_cast<const Entry*>(end)[-1 - static_cast<spL_t>(i)];
    }
    void insert(upL_t i, Entry added);
    void remove(upL_t i);
    void update_top();
    void raise_peak();
    upL_t find_at_or_below(std::uintptr_t address) const;
    upL_t find(const void* block_start) const;
    bool has_child_within(const Entry& block) const;
    void adopt(BufferHeap& child, void* region);
};

/// Guarded blocks. A null heap stands for the general allocator.
///
/// `size` bytes at a multiple of `alignment` (a power of two; below 8 becomes 8). The heap gives up
/// heap_block_bytes(size, alignment) for it. Fatal "Memory Allocation Failure." without room.
void* heap_alloc(BufferHeap* heap, upL_t size, upL_t alignment = ALIGNMENT_BYTES);
/// Ends the program when a guard of the block was overwritten.
void heap_check(const void* pointer);
/// Checks the block and returns it to the heap it came from. Ignores null and all-ones pointers.
void heap_free(void* pointer);
/// Grows a block of a heap in place; fatal if there is no room. A size of 0 and a shrinking one do nothing.
void heap_expand(void* pointer, upL_t new_size);
/// Moves a block down over the gap under it, by a multiple of `alignment`; returns its new address. Nothing
/// may refer to the block, and no open sub-heap may lie in it.
void* heap_shrink_front(void* pointer, upL_t alignment);

/// What heap_alloc() takes from the heap, the 16 bytes of the table not counted.
constexpr upL_t heap_block_bytes(upL_t size, upL_t alignment) {
    return (alignment < 8 ? 8 : alignment) + round_up(size, 8) + 40;
}

}  // namespace lumo
