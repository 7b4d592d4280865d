#pragma once

#include "velmora/shell/entry/program.h"

namespace velmora {

/// The action `about`: what this program is.
int run_about(Program& program);

}  // namespace velmora
