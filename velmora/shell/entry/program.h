/// What start-up gathers and every action reads.
#pragma once

#include <functional>

#include "lumo/foundation/hardware/detected_hardware.h"
#include "velmora/shell/entry/program_options.h"

namespace velmora {

struct Program {
    ArgumentList arguments;
    ProgramOptions options;
    std::string program_path;         ///< of the running program
    std::string program_dir;          ///< the part of the path up to its last separator, which is kept
    lumo::DetectedHardware hardware;  ///< read-only once start-up is over
};

/// What the program does after start-up; returns the exit code.
using Action = std::function<int(Program&)>;

/// Runs the program from its arguments to its exit code: 0, or 1 for every failure. The last thing printed
/// is a pause where the options ask for one.
int run_program(std::vector<std::string> arguments, const Action& action);

}  // namespace velmora
