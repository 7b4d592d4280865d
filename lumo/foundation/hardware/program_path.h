#pragma once

#include <string>

namespace lumo {

/// The path of the running program. Ends the process with a message when the system does not tell.
std::string read_program_path();

/// A path up to its last '/' or '\', which is kept; empty if it has none.
std::string folder_of(const std::string& path);

}  // namespace lumo
