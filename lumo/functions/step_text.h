/// What a step of an iteration tells the status line.
#pragma once

#include "lumo/foundation/status/status_node.h"

namespace lumo {

/// The tag of the step, and the size of `words` words in decimal digits.
template <typename wtype>
ColorString step_text(const char* tag, upL_t words);

}  // namespace lumo
