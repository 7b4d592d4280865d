/// Counts the allocations of a test binary that links `allocation_count`: its operator new is replaced.
#pragma once

#include <cstddef>

namespace lumo::testing {

std::size_t allocation_count();
/// Those of more than 1 KiB: texts of status are shorter, numbers and transforms longer.
std::size_t large_allocation_count();

}  // namespace lumo::testing
