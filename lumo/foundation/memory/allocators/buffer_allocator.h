/// The allocators of large blocks that the user chooses from.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumo/foundation/config/value.h"
#include "lumo/foundation/memory/allocators/page_policy.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

/// A block, or an error: `pointer` is null exactly if the allocation failed, and `error` then says why.
struct BufferBlock {
    void* pointer = nullptr;
    upL_t bytes = 0;  ///< as asked for
    PageAllocation pages;
    std::string error;
};

/// An allocator and its settings. Immutable while blocks are made, so any thread may allocate.
class BufferAllocator {
 public:
    virtual ~BufferAllocator() = default;
    virtual const char* name() const = 0;  ///< the word of configuration files and of the command line
    virtual const char* display_name() const = 0;
    virtual std::unique_ptr<BufferAllocator> clone() const = 0;

    /// Adds the `Allocator` key and the settings to the object.
    void to_cfg(Config::Object& object) const;
    /// Takes the settings that the object has; the others keep their values.
    virtual void load(const Config::Object& object);
    /// Prints a row for each setting, numbered from `line`; returns the next number.
    virtual upL_t print_settings(upL_t line) const;
    /// Changes the setting with this number (from 0), asking on the console where an answer is needed.
    virtual void menu_action(upL_t option);

    /// A block aligned to at least 4096 bytes, committed with the help of the context. Raises nothing.
    virtual BufferBlock allocate(upL_t bytes, const ParallelContext& context) const = 0;
    /// Returns a block of this allocator and clears it; an empty one is ignored.
    virtual void release(BufferBlock& block) const = 0;

 protected:
    virtual void add_settings(Config::Object& object) const;
};

}  // namespace lumo
