#pragma once

#include "velmora/shell/entry/program.h"

namespace velmora {

/// The menu of a program started without an action: runs one item.
int run_main_menu(Program& program);

}  // namespace velmora
