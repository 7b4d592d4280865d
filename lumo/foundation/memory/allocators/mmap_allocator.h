#pragma once

#include <optional>

#include "lumo/foundation/memory/allocators/buffer_allocator.h"

namespace lumo {

/// Pages from the system, large ones if it can be, locked if it may be.
class MmapAllocator final : public BufferAllocator {
 public:
    PagePolicy large_pages = PagePolicy::ATTEMPT;
    PagePolicy locked_pages = PagePolicy::ATTEMPT;
    std::optional<upL_t> node;  ///< all pages must come from this NUMA node

    const char* name() const override { return "mmap"; }
    const char* display_name() const override { return "POSIX mmap()"; }
    std::unique_ptr<BufferAllocator> clone() const override;
    void load(const Config::Object& object) override;
    upL_t print_settings(upL_t line) const override;
    void menu_action(upL_t option) override;
    BufferBlock allocate(upL_t bytes, const ParallelContext& context) const override;
    void release(BufferBlock& block) const override;

 protected:
    void add_settings(Config::Object& object) const override;

 private:
    std::string find_fault(const BufferBlock& block) const;
};

}  // namespace lumo
