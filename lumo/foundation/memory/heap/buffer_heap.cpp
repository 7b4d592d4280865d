#include "lumo/foundation/memory/heap/buffer_heap.h"

#include <algorithm>
#include <cstring>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/memory/heap/heap_block.h"

namespace lumo {

BufferHeap::BufferHeap(void* base_address, upL_t bytes)
    : base(reinterpret_cast<std::uintptr_t>(base_address)) {
    if (base % 8 != 0) fatal_error("Alignment Error");
    end = base + (bytes & ~upL_t(7));
    top = peak_top = base;
    table_limit = end;
}

void BufferHeap::insert(upL_t i, Entry added) {
    // The table grows downwards, so the entries from i on stand below entry i - 1.
    Entry* lowest = &entry(count);
    std::memmove(lowest, lowest + 1, (count - i) * sizeof(Entry));
    entry(i) = added;
    table_limit -= sizeof(Entry);
    count++;
    update_top();
    peak_count = std::max(peak_count, count);
    raise_peak();
}

void BufferHeap::raise_peak() {
    peak_top = std::max(peak_top, top);
    // The regions of open sub-heaps are counted by their own peaks when they close.
    if (first_child == nullptr) required = std::max<upL_t>(required, top - base);
}

void BufferHeap::remove(upL_t i) {
    Entry* lowest = &entry(count - 1);
    std::memmove(lowest + 1, lowest, (count - 1 - i) * sizeof(Entry));
    table_limit += sizeof(Entry);
    count--;
    update_top();
}

void BufferHeap::update_top() {
    top = count == 0 ? base : entry(count - 1).address + entry(count - 1).bytes;
}

upL_t BufferHeap::free_at_top() const {
    const upL_t room = table_limit - top;
    return room < sizeof(Entry) ? 0 : room - sizeof(Entry);
}

bool BufferHeap::contains(const void* pointer) const {
    const auto address = reinterpret_cast<std::uintptr_t>(pointer);
    return base <= address && address < end;
}

void* BufferHeap::allocate(upL_t bytes) {
    if (table_limit - top < sizeof(Entry) || bytes > end - base) return nullptr;
    bytes = std::max<upL_t>(round_up(bytes, 8), 8);  // blocks of no bytes could not be told apart
    std::uintptr_t candidate = base;
    for (upL_t i = 0; i < count; i++) {
        const Entry& above = entry(i);
        if (above.address - candidate >= bytes) {
            insert(i, {candidate, bytes});
            return reinterpret_cast<void*>(candidate);
        }
        candidate = above.address + above.bytes;
    }
    if (table_limit - candidate < bytes + sizeof(Entry)) return nullptr;
    insert(count, {candidate, bytes});
    return reinterpret_cast<void*>(candidate);
}

upL_t BufferHeap::find_at_or_below(std::uintptr_t address) const {
    upL_t low = 0;
    upL_t length = count;
    while (length > 1) {
        const upL_t half = length / 2;
        if (entry(low + half).address <= address) {
            low += half;
            length -= half;
        } else {
            length = half;
        }
    }
    return low;
}

upL_t BufferHeap::find(const void* block_start) const {
    if (count == 0) fatal_error("Heap is empty.");
    const auto address = reinterpret_cast<std::uintptr_t>(block_start);
    const upL_t i = find_at_or_below(address);
    if (entry(i).address != address) fatal_error("Heap Inconsistency");
    return i;
}

void BufferHeap::release(void* block_start) {
    remove(find(block_start));
}

void BufferHeap::expand(void* block_start, upL_t bytes) {
    const upL_t i = find(block_start);
    Entry& block = entry(i);
    bytes = round_up(bytes, 8);
    if (bytes <= block.bytes) return;
    const std::uintptr_t limit = i + 1 < count ? entry(i + 1).address : table_limit;
    if (limit - block.address < bytes) fatal_error("Unable to expand block.");
    block.bytes = bytes;
    update_top();
    raise_peak();
}

bool BufferHeap::has_child_within(const Entry& block) const {
    for (const BufferHeap* child = first_child; child != nullptr; child = child->next_sibling)
        if (child->base >= block.address && child->base < block.address + block.bytes) return true;
    return false;
}

upL_t BufferHeap::shrink_front(void* block_start, upL_t alignment) {
    const upL_t i = find(block_start);
    Entry& block = entry(i);
    require(!has_child_within(block), "Invalid Function Parameters:   ", "heap_shrink_front()");
    const std::uintptr_t below = i == 0 ? base : entry(i - 1).address + entry(i - 1).bytes;
    const upL_t distance = (block.address - below) & ~(std::max<upL_t>(alignment, 8) - 1);
    if (distance == 0) return 0;
    std::memmove(reinterpret_cast<void*>(block.address - distance), block_start, block.bytes);
    block.address -= distance;
    update_top();
    return distance;
}

void BufferHeap::record_sub_heaps(upL_t base_requirement, upL_t peak_a, upL_t peak_b) {
    required = std::max(required, base_requirement + 2 * std::max(peak_a, peak_b));
}

void BufferHeap::adopt(BufferHeap& child, void* region) {
    release(region);
    // In ascending order: this table may grow down over the child's, but only over entries already read.
    for (upL_t i = 0; i < child.count; i++) {
        const Entry block = child.entry(i);
        const upL_t at = count == 0 ? 0 : find_at_or_below(block.address);
        const upL_t place = count != 0 && entry(at).address < block.address ? at + 1 : at;
        const std::uintptr_t new_top = std::max(top, block.address + block.bytes);
        if (table_limit < new_top + sizeof(Entry))
            fatal_error("Critical Internal Assertion Failure: APIs-448");
        insert(place, block);
        HeapBlock::set_owner(reinterpret_cast<void*>(block.address), this);
    }
}

}  // namespace lumo
