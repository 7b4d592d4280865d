#pragma once

#include "lumo/foundation/memory/allocators/buffer_allocator.h"

namespace lumo {

/// The general allocator, with guard words around the block.
class MallocAllocator final : public BufferAllocator {
 public:
    const char* name() const override { return "malloc"; }
    const char* display_name() const override { return "C malloc()"; }
    std::unique_ptr<BufferAllocator> clone() const override;
    BufferBlock allocate(upL_t bytes, const ParallelContext& context) const override;
    /// A damaged guard ends the program.
    void release(BufferBlock& block) const override;
};

}  // namespace lumo
