#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Logical cores that are online, as the operating system counts them; at least 1.
upL_t logical_core_count();

}  // namespace lumo
