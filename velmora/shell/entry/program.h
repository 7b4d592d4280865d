/// What start-up gathers and every action reads.
#pragma once

#include "lumo/foundation/hardware/detected_hardware.h"
#include "velmora/shell/entry/program_options.h"

namespace velmora {

struct Program {
    ArgumentList arguments;
    ProgramOptions options;
    lumo::DetectedHardware hardware;  ///< read-only once start-up is over
};

/// Runs the program from its arguments to its exit code: 0, or 1 for every failure. The last thing printed
/// is a pause where the options ask for one.
int run_program(std::vector<std::string> arguments);

}  // namespace velmora
