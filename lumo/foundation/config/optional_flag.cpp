#include "lumo/foundation/config/optional_flag.h"

#include "lumo/foundation/errors/exceptions.h"

namespace lumo::Config {

using Mode = OptionalFlagConfig::Mode;

std::string OptionalFlagConfig::to_text() const {
    switch (mode) {
        case Mode::AUTOMATIC:
            return "auto";
        case Mode::OFF:
            return "false";
        case Mode::ON:
            return "true";
    }
    throw InvalidParametersException("OptionalFlagConfig", "Invalid Mode");
}

OptionalFlagConfig OptionalFlagConfig::from_text(std::string_view text) {
    for (const Mode mode : {Mode::AUTOMATIC, Mode::OFF, Mode::ON})
        if (OptionalFlagConfig{mode}.to_text() == text) return {mode};
    throw InvalidParametersException("OptionalFlagConfig", "Invalid Mode");
}

bool OptionalFlagSelector::selected() const {
    switch (flag.mode) {
        case Mode::AUTOMATIC:
            return automatic_choice;
        case Mode::OFF:
            return false;
        case Mode::ON:
            return true;
    }
    throw InvalidParametersException("OptionalFlagSelector", "Invalid Mode");
}

}  // namespace lumo::Config
