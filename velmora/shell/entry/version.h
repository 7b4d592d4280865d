#pragma once

#include <string>

namespace velmora {

/// "velmora 0.1.0".
std::string version_text();
/// "velmora v0.1.0 Release": the version and the build.
std::string build_text();
/// The instruction set of the kernels in use: "x64 AVX2".
std::string tuning_text();
/// Prints compiler, options and build type.
void print_compilation_options();

}  // namespace velmora
