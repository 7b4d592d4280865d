#pragma once

#include "velmora/shell/entry/program.h"

namespace velmora {

/// Finds Machin-like formulas of a logarithm that the user names, or tests those of all small numbers.
int run_formula_generator(Program&);

}  // namespace velmora
