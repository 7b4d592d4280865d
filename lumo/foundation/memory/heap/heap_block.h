/// Layout of a guarded heap block: the owner word at its start; directly before the user pointer the address
/// of that start, the user size rounded up to 8, and a guard; a second guard behind the user bytes.
#pragma once

#include "lumo/foundation/memory/guard_words.h"
#include "lumo/foundation/memory/heap/buffer_heap.h"

namespace lumo {

/// A view of a block by its user pointer.
class HeapBlock {
 public:
    explicit HeapBlock(const void* user_pointer)
        : user(static_cast<char*>(const_cast<void*>(user_pointer))) {}

    /// Lays the words of a block of heap_block_bytes(size, alignment) bytes out over raw space.
    static HeapBlock format(void* start, BufferHeap* owner, upL_t size, upL_t alignment);
    static void set_owner(void* start, BufferHeap* owner) {
        store_guard(start, reinterpret_cast<std::uintptr_t>(owner));
    }

    char* data() const { return user; }
    void* start() const { return reinterpret_cast<void*>(load_guard(user - 24)); }
    upL_t size() const { return load_guard(user - 16); }
    std::uint64_t front_guard() const { return load_guard(user - 8); }
    std::uint64_t back_guard() const { return load_guard(user + size()); }
    BufferHeap* owner() const { return reinterpret_cast<BufferHeap*>(load_guard(start())); }
    /// Bytes from the start of the block to the user pointer.
    upL_t front_bytes() const { return upL_t(user - static_cast<char*>(start())); }

    void set_start(void* start) { store_guard(user - 24, reinterpret_cast<std::uintptr_t>(start)); }
    void set_size(upL_t size) {
        store_guard(user - 16, size);
        store_guard(user + size, HEAP_BLOCK_GUARD);
    }

 private:
    char* user;
};

}  // namespace lumo
