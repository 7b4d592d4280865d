#pragma once

#include <string>
#include <vector>

#include "lumo/foundation/memory/allocators/buffer_allocator.h"

namespace velmora {

/// What an allocator was to attempt and did not get for a block, a line each.
std::vector<std::string> allocation_shortfalls(const lumo::BufferAllocator& allocator,
                                               const lumo::PageAllocation& pages);

}  // namespace velmora
