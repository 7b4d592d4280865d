/// What the global options set. Written on the main thread before any worker exists, read-only afterwards;
/// colours and the pause on fatal errors stand in the console's settings.
#pragma once

#include "velmora/shell/entry/argument_list.h"

namespace velmora {

struct ProgramOptions {
    int pause_value = 0;
    int priority_value = -1;
    bool show_pii = false;
    bool skip_warnings = false;
};

/// Consumes the global options at the cursor, in any order and number; the first other key ends them.
void read_global_options(ProgramOptions& options, ArgumentList& arguments);

/// Whether the program pauses at its end after an action with this result.
bool pauses_at_exit(const ProgramOptions& options, int result);

}  // namespace velmora
