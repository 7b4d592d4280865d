#pragma once

#include "velmora/shell/entry/program.h"

namespace velmora {

/// The action `digitviewer`: looks at digit files, on all cores.
int run_digit_viewer(Program& program);

}  // namespace velmora
