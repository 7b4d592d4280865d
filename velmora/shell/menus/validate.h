#pragma once

#include "velmora/shell/entry/program.h"

namespace velmora {

/// The action `validate`: checks a validation file. Bad files are told and are no failure.
int run_validate(Program& program);

}  // namespace velmora
