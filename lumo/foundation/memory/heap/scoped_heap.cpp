#include "lumo/foundation/memory/heap/scoped_heap.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/memory/heap/heap_block.h"

namespace lumo {

ScopedHeap::ScopedHeap(BufferHeap* owner, upL_t bytes, bool counts)
    : parent(owner),
      raises_requirement(counts),
      parent_usage(owner ? owner->current_usage() : 0),
      parent_requirement(owner ? owner->required : 0),
      region(heap_alloc(owner, bytes, ALIGNMENT_BYTES)),
      inner(region, bytes) {
    if (parent == nullptr) return;
    parent->required = parent_requirement;  // the region counts by what is used of it
    inner.parent = parent;
    inner.next_sibling = parent->first_child;
    parent->first_child = &inner;
}

ScopedHeap::~ScopedHeap() {
    heap_check(region);
    if (parent == nullptr) {
        if (inner.active_blocks() > 0) Console::print("Memory leak detected\n", 'R');
        heap_free(region);
        return;
    }
    unlink();
    if (raises_requirement) parent->required = std::max(parent->required, parent_usage + inner.peak_usage());
    if (inner.active_blocks() > 0)
        parent->adopt(inner, HeapBlock(region).start());
    else
        heap_free(region);
}

void ScopedHeap::unlink() {
    BufferHeap** link = &parent->first_child;
    while (*link != &inner) link = &(*link)->next_sibling;
    *link = inner.next_sibling;
}

ScopedHeapPair::ScopedHeapPair(BufferHeap& owner, upL_t bytes_each)
    : parent(owner),
      base_requirement(owner.current_usage()),
      a(&owner, bytes_each, false),
      b(&owner, bytes_each, false) {}

ScopedHeapPair::~ScopedHeapPair() {
    parent.record_sub_heaps(base_requirement, first().peak_usage(), second().peak_usage());
}

}  // namespace lumo
