#pragma once

#include "velmora/shell/entry/program.h"

namespace velmora {

/// The action `config <file>`: runs what a configuration file describes. A path without a '.' gets ".cfg".
int run_config(Program& program);

}  // namespace velmora
