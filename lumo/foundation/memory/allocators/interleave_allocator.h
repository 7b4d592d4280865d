#pragma once

#include <vector>

#include "lumo/foundation/memory/allocators/buffer_allocator.h"

namespace lumo {

/// Pages spread over NUMA nodes, 2 MiB at a time, hashed or in turn.
///
/// Each stretch is first touched by a thread that takes its memory from the stretch's node. (Policies on the
/// region itself would cut it into one mapping a stretch, and the system allows few mappings.)
class InterleaveAllocator final : public BufferAllocator {
 public:
    bool hashed = true;
    PagePolicy locked_pages = PagePolicy::ATTEMPT;
    /// A node named twice gets twice the share. Empty means each node that has memory. Nodes that do not
    /// exist take no pages of their own.
    std::vector<upL_t> nodes;

    const char* name() const override { return "interleave"; }
    const char* display_name() const override { return "Node Interleaving"; }
    std::unique_ptr<BufferAllocator> clone() const override;
    void load(const Config::Object& object) override;
    upL_t print_settings(upL_t line) const override;
    void menu_action(upL_t option) override;
    BufferBlock allocate(upL_t bytes, const ParallelContext& context) const override;
    void release(BufferBlock& block) const override;

 protected:
    void add_settings(Config::Object& object) const override;
};

/// Touches a fresh mapping so that its stretches land on `nodes` (at least one). A node among `existing` that
/// takes no pages is told as a warning; others are left where the system puts them.
void touch_interleaved(void* pointer, upL_t bytes, const std::vector<upL_t>& nodes, bool hashed,
                       const std::vector<upL_t>& existing, const ParallelContext& context);

/// Which of `nodes` nodes (at least 1) the stretch with this number lies on.
upL_t interleaved_node(upL_t stretch, upL_t nodes, bool hashed);

}  // namespace lumo
