#pragma once

#include "velmora/shell/entry/program.h"

namespace velmora {

/// Runs the action at the cursor, or the main menu when none is named. Returns the exit code.
int dispatch_action(Program& program);

}  // namespace velmora
