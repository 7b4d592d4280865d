/// The action `bench`: Pi in memory at a size of the tables, as a benchmark.
#pragma once

#include "velmora/shell/entry/program.h"
#include "velmora/shell/session/normal_float_session.h"

namespace velmora {

/// The action. Without arguments, and from the menu, the dialogue.
int run_bench(Program& program);
/// Asks for the kind and the size, and runs.
int run_bench_menu(Program& program);

/// Session and size of the options at the cursor. InvalidParametersException "No benchmark size selected.";
/// an unknown option ends the process with "Invalid Parameter: " and its key.
std::unique_ptr<NormalFloatSession> parse_bench(const lumo::DetectedHardware& hardware,
                                                ArgumentList& arguments);
/// A session with the settings of a benchmark: Pi by its first algorithm, no hexadecimal digits.
std::unique_ptr<NormalFloatSession> make_benchmark_session(const lumo::DetectedHardware& hardware);
/// Sets the size and runs; 1 if the machine cannot.
int run_benchmark(NormalFloatSession& session, lumo::upL_t digits);

}  // namespace velmora
