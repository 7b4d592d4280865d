/// The action `custom`: one constant with the user's own settings.
#pragma once

#include "velmora/shell/entry/program.h"
#include "velmora/shell/session/normal_float_session.h"

namespace velmora {

/// The action. Without arguments, the compute menu.
int run_custom(Program& program);

/// A session for `<constant>` at the cursor and the options behind it, up to the end of the arguments. An
/// unknown option ends the process with "Invalid Parameter: " and its key.
std::unique_ptr<NormalFloatSession> parse_custom(const lumo::DetectedHardware& hardware,
                                                 ArgumentList& arguments);

}  // namespace velmora
