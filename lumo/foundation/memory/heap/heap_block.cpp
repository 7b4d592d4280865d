#include "lumo/foundation/memory/heap/heap_block.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/fatal.h"

namespace lumo {

namespace {

[[noreturn]] void bounds_failure(std::uint64_t found, const char* text) {
    char value[32];
    std::snprintf(value, sizeof(value), "0x%016llx", static_cast<unsigned long long>(found));
    Console::print_error(value);
    assertion_failed(std::string("Array Bounds Checking: ") + text, "heap_check()");
}

}  // namespace

HeapBlock HeapBlock::format(void* start, BufferHeap* owner, upL_t size, upL_t alignment) {
    const upL_t a = std::max<upL_t>(alignment, 8);
    char* first = static_cast<char*>(start);
    const auto address = reinterpret_cast<std::uintptr_t>(start);
    HeapBlock block(first + ((((address + 32) & ~(a - 1)) + a) - address));
    set_owner(start, owner);
    block.set_start(start);
    store_guard(block.user - 8, HEAP_BLOCK_GUARD);
    block.set_size(round_up(size, 8));
    return block;
}

void* heap_alloc(BufferHeap* heap, upL_t size, upL_t alignment) {
    const upL_t total = heap_block_bytes(size, alignment);
    void* start = nullptr;
    if (total > size) start = heap != nullptr ? heap->allocate(total) : std::malloc(total);
    if (start == nullptr) abort_with("Memory Allocation Failure.");
    return HeapBlock::format(start, heap, size, alignment).data();
}

void heap_check(const void* pointer) {
    const HeapBlock block(pointer);
    if (block.front_guard() != HEAP_BLOCK_GUARD)
        bounds_failure(block.front_guard(), "An array under-run has been detected.");
    if (block.back_guard() != HEAP_BLOCK_GUARD)
        bounds_failure(block.back_guard(), "An array over-run has been detected.");
}

void heap_free(void* pointer) {
    if (pointer == nullptr || reinterpret_cast<std::uintptr_t>(pointer) == ~std::uintptr_t(0)) return;
    heap_check(pointer);
    const HeapBlock block(pointer);
    if (BufferHeap* heap = block.owner())
        heap->release(block.start());
    else
        std::free(block.start());
}

void heap_expand(void* pointer, upL_t new_size) {
    if (new_size == 0) return;
    heap_check(pointer);
    HeapBlock block(pointer);
    BufferHeap* heap = block.owner();
    if (heap == nullptr) fatal_error("Pointer not associated with a heap.");
    const upL_t rounded = round_up(new_size, 8);
    if (rounded <= block.size()) return;
    // A block of large alignment has more than the usual 64 bytes in front of its user bytes.
    const upL_t needed = std::max(rounded + 72, block.front_bytes() + rounded + 8);
    if (needed < new_size) fatal_error("Unable to expand block.");
    heap->expand(block.start(), needed);
    block.set_size(rounded);
}

void* heap_shrink_front(void* pointer, upL_t alignment) {
    heap_check(pointer);
    const HeapBlock block(pointer);
    BufferHeap* heap = block.owner();
    if (heap == nullptr) fatal_error("Pointer not associated with a heap.");
    char* start = static_cast<char*>(block.start());
    const upL_t distance = heap->shrink_front(start, alignment);
    HeapBlock moved(block.data() - distance);
    moved.set_start(start - distance);
    return moved.data();
}

}  // namespace lumo
