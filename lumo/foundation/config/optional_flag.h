/// Switches that may be left to the program.
#pragma once

#include <string>
#include <string_view>

namespace lumo::Config {

/// A flag as a configuration states it.
struct OptionalFlagConfig {
    enum class Mode { AUTOMATIC, OFF, ON };
    Mode mode = Mode::AUTOMATIC;

    /// "auto", "false" or "true". Throws InvalidParametersException "Invalid Mode" for another state.
    std::string to_text() const;
    /// The inverse. Throws InvalidParametersException "Invalid Mode" for another text.
    static OptionalFlagConfig from_text(std::string_view text);
};

/// A flag together with what the program would choose by itself.
struct OptionalFlagSelector {
    OptionalFlagConfig flag;
    bool automatic_choice = false;

    /// Throws InvalidParametersException "Invalid Mode" for an unknown state.
    bool selected() const;
};

}  // namespace lumo::Config
