#pragma once

#include "velmora/shell/session/normal_float_session.h"

namespace velmora {

/// Prints the summary and runs; 1 if the machine cannot.
int run_session(NormalFloatSession& session);

}  // namespace velmora
