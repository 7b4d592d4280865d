/// Choosing a constant and its settings in a dialogue.
#pragma once

#include "velmora/shell/entry/program.h"
#include "velmora/shell/session/normal_float_session.h"

namespace velmora {

/// Asks for the constant, the algorithm and the settings, then runs the session.
int run_compute_menu(Program& program);

/// Lists the constants that can be computed and asks for one.
std::unique_ptr<Constant> ask_constant();
/// Lists the algorithms of the session's constant and asks for one.
void ask_algorithm(NormalFloatSession& session);
/// Shows the settings and changes them as asked, until the computation is to start.
void ask_settings(NormalFloatSession& session);

}  // namespace velmora
