/// The allocators by name: `malloc`, `mmap`, `interleave`.
#pragma once

#include <string_view>

#include "lumo/foundation/memory/allocators/buffer_allocator.h"

namespace lumo {

/// With default settings. Throws InvalidParametersException "Invalid Memory Allocator: <name>".
std::unique_ptr<BufferAllocator> make_buffer_allocator(std::string_view name);
/// The allocator that the key `Allocator` names, with the settings beside it; `otherwise` without the key.
std::unique_ptr<BufferAllocator> load_buffer_allocator(const Config::Object& object,
                                                       const BufferAllocator& otherwise);
/// `interleave` on machines with at least two NUMA nodes, `mmap` on others.
std::unique_ptr<BufferAllocator> default_buffer_allocator(upL_t numa_nodes);

/// Lists the allocators and asks for one.
std::unique_ptr<BufferAllocator> ask_buffer_allocator();

}  // namespace lumo
