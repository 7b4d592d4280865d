/// Tells whether the text of a validation file is what the program wrote.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct ValidationOutcome {
    bool passed = false;
    std::vector<std::string> messages;     ///< why not, or "Validation Passed!"
    std::vector<std::string> key_figures;  ///< of a file that passed; the first is "Computation Time: "
};

/// Any bytes may be given. Versions 1.2 and 1.3 are read.
ValidationOutcome validate_text(std::string_view file);

/// The dialogue: asks for the path of a file and prints the outcome. Bad files are no failure. Throws
/// EndOfInput only.
void run_validator();

}  // namespace velmora
