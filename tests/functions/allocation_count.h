/// Counts the allocations of this test binary: its operator new is replaced.
#pragma once

#include <cstddef>

namespace lumo::testing {

std::size_t allocation_count();

}  // namespace lumo::testing
