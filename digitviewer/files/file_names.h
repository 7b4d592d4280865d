/// Names of digit files.
#pragma once

#include <string>

#include "lumo/foundation/types/types.h"

namespace DigitViewer2 {

/// "<base> - Dec - <algorithm><extension>", or " - Hex - ". Any radix but 10 and 16 is fatal: "Invalid Base".
std::string digit_file_name(const std::string& base, lumo::upL_t radix, const std::string& algorithm,
                            const std::string& extension);
/// The name that a file bears until it is finished and checked: ends in " (incomplete)".
std::string incomplete_name(const std::string& final_path);

}  // namespace DigitViewer2
